"""A device, and the record that it is to the C library."""
import ctypes
from dataclasses import dataclass
from typing import Optional

from ._tables import FIELD_OFFSETS, FIELD_SIZE, Scanner
from ._text import decode, encode_field


class Record(ctypes.Structure):
    """ZQDEVICEINFO of the C header."""

    _pack_ = 1
    _fields_ = [(field, ctypes.c_char * FIELD_SIZE) for field in FIELD_OFFSETS]


@dataclass(frozen=True)
class Device:
    """A camera: eleven texts of at most 64 bytes each, "?" for what is not known.

    To change one, make another: dataclasses.replace(device, device_desc="above the belt").
    """

    name: str = "?"
    """name in the list, "Camera1" ..., given by the library"""
    device_desc: str = "?"
    """description for people"""
    device_type_by_name: str = "?"
    """device type; selects the camera configuration file"""
    device_id: str = "?"
    """identity: the key of modify and remove; case counts"""
    used_scanner: str = "SCANNER_MANUAL"
    """name of the scanner that found the device (see scanner)"""
    used_address: str = "?"
    """the address under which that scanner reached it"""
    ccm: str = "?"
    """camera control module: carries commands"""
    ccm_address: str = "?"
    """the device's address for that module"""
    iam: str = "?"
    """image acquisition module: brings images"""
    iam_address: str = "?"
    """the device's address for that module"""
    firmware_version: str = "?"
    """firmware version text"""

    @property
    def scanner(self) -> Optional[Scanner]:
        """The scanner that found the device; None when used_scanner is no scanner's name."""
        prefix = "SCANNER_"
        if not self.used_scanner.startswith(prefix):
            return None
        return Scanner.__members__.get(self.used_scanner[len(prefix):])


def from_record(record: Record) -> Device:
    return Device(**{field: decode(getattr(record, field)) for field in FIELD_OFFSETS})


def to_record(device: Device) -> Record:
    """A text of more than 64 bytes: ZQ_ERR_TEXT_TOO_LONG; one that can't be passed: ZQ_ERR_BAD_VALUE."""
    return Record(**{field: encode_field(getattr(device, field), field) for field in FIELD_OFFSETS})
