"""Texts of the library: bytes that it passes through as they are."""
import sys

from ._errors import ZQError
from ._tables import FIELD_SIZE, ErrorNumber

# Bytes that are no character become lone surrogates, and are the same bytes again on the way back.
_ENCODING = "mbcs" if sys.platform == "win32" else "utf-8"
_STRAY_BYTES = "surrogateescape"


def decode(data: bytes) -> str:
    return data.decode(_ENCODING, _STRAY_BYTES)


def encode(text: str, what: str) -> bytes:
    """The text's bytes, never altered and never cut. `what` names it in errors."""
    try:
        data = text.encode(_ENCODING, _STRAY_BYTES)
    except UnicodeEncodeError as error:
        raise ZQError(ErrorNumber.ZQ_ERR_BAD_VALUE, what, str(error)) from None
    if b"\0" in data:
        raise ZQError(ErrorNumber.ZQ_ERR_BAD_VALUE, what, "a NUL in the text")
    return data


def encode_field(text: str, field: str) -> bytes:
    """The same for a field of the record, which holds 64 bytes."""
    data = encode(text, f"Device.{field}")
    if len(data) >= FIELD_SIZE:
        raise ZQError(ErrorNumber.ZQ_ERR_TEXT_TOO_LONG, f"Device.{field}", f"{len(data)} bytes")
    return data


def printable(text: str) -> str:
    """What came from a camera or a file, safe to print: control characters and the like are escaped."""
    def shown(character: str) -> str:
        if character.isprintable():
            return character
        if "\udc80" <= character <= "\udcff":
            return f"\\x{ord(character) - 0xDC00:02x}"
        return character.encode("unicode_escape").decode("ascii")

    return "".join(shown(character) for character in text)
