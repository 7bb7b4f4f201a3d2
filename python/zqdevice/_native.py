"""The C library: where its file is found, and its 21 functions."""
import ctypes
import os
import pathlib
import sys
from typing import Any, Dict, List, Optional, Union

from ._device import Record
from ._errors import ZQError
from ._tables import ErrorNumber

PathName = Union[str, "os.PathLike[str]"]

OK = 1
LIBRARY_FILE = "ZQDeviceAPI_x64.v2.0.dll" if sys.platform == "win32" else "libZQDeviceAPI.so.2"
LIBRARY_VARIABLE = "ZQSDK_LIBRARY"

_text = ctypes.c_char_p
_number = ctypes.c_uint
_count = ctypes.POINTER(ctypes.c_uint)
_record_out = ctypes.POINTER(Record)

# Every function with its parameters; each returns a result number.
FUNCTIONS: Dict[str, List[Any]] = {
    "ZQDEV_InitLibrary": [],
    "ZQDEV_DeInitLibrary": [],
    "ZQDEV_GetNofDevices": [_count],
    "ZQDEV_GetDevice": [_number, _record_out],
    "ZQDEV_AddDevice": [Record],
    "ZQDEV_RemoveDevice": [_text],
    "ZQDEV_ModifyDevice": [Record],
    "ZQDEV_SaveDeviceConfig": [],
    "ZQDEV_LoadDeviceConfig": [],
    "ZQDEV_GetDefaultCCM": [_text, _text, _number],
    "ZQDEV_GetDefaultIAM": [_text, _text, _number],
    "ZQDEV_GetNofSupportedCCMs": [_text, _count],
    "ZQDEV_GetSupportedCCM": [_text, _number, _text, _number],
    "ZQDEV_GetNofSupportedIAMs": [_text, _count],
    "ZQDEV_GetSupportedIAM": [_text, _number, _text, _number],
    "ZQDEV_GetNofSupportedDeviceTypes": [_count],
    "ZQDEV_GetSupportedDevice": [_number, _text, _number],
    "ZQDEV_ScanForDevices": [],
    "ZQDEV_ScanForDevicesWithScanner": [ctypes.c_int],
    "ZQDEV_RescanDevice": [_record_out],
    "ZQDEV_ChangeDeviceNetAddr": [Record, _text],
}


def _environment(variable: str) -> str:
    """A process with more rights than its starter's does not look at it, as the library itself does not."""
    if sys.platform == "win32":
        return os.environ.get(variable, "")
    secure_getenv = ctypes.CDLL(None).secure_getenv
    secure_getenv.restype = ctypes.c_char_p
    value: Optional[bytes] = secure_getenv(os.fsencode(variable))
    return os.fsdecode(value or b"")


def _folders() -> List[str]:
    """Where the library is looked for when nobody says where it is."""
    package = pathlib.Path(__file__).resolve().parent
    folders = [str(package), str(package.parent)]
    if sys.platform == "win32":
        folders += [folder for folder in os.environ.get("PATH", "").split(os.pathsep) if os.path.isabs(folder)]
    return folders


def find_library(path: Optional[PathName] = None) -> str:
    """The file that is given (or lies in the folder that is given); else the one that ZQSDK_LIBRARY names by an absolute
    path; else the one beside this package; else the one that the system finds."""
    named = os.path.abspath(os.fsdecode(path)) if path else _environment(LIBRARY_VARIABLE)
    if os.path.isabs(named):
        return os.path.join(named, LIBRARY_FILE) if os.path.isdir(named) else named
    for folder in _folders():
        file = os.path.join(folder, LIBRARY_FILE)
        if os.path.isfile(file):
            return file
    return LIBRARY_FILE


def _why_not(error: OSError, file: str) -> str:
    if os.path.isabs(file):
        return str(error)
    return (f"{error}; it is neither in {', '.join(_folders())} nor where the system looks, and {LIBRARY_VARIABLE} does "
            "not name it by an absolute path")


class Native:
    """The loaded library. It stays loaded until the process ends. Thread-safe."""

    def __init__(self, path: Optional[PathName] = None) -> None:
        self.file = find_library(path)
        try:
            library = ctypes.CDLL(self.file)
        except OSError as error:
            raise ZQError(ErrorNumber.ZQ_ERR_LIBRARY_NOT_LOADED, self.file, _why_not(error, self.file)) from error
        self._functions: Dict[str, Any] = {}
        for name, parameters in FUNCTIONS.items():
            try:
                function = getattr(library, name)
            except AttributeError as error:
                raise ZQError(ErrorNumber.ZQ_ERR_ENTRY_POINT_MISSING, self.file, name) from error
            function.argtypes = parameters
            function.restype = ctypes.c_int
            self._functions[name] = function

    def call(self, name: str, *arguments: Any) -> None:
        """Calls the function, with no lock of the interpreter's held. A result other than OK: ZQError."""
        result = self._functions[name](*arguments)
        if result != OK:
            raise ZQError(result, name)
