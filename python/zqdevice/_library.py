"""The library's operations."""
import ctypes
import threading
import time
from dataclasses import dataclass
from types import TracebackType
from typing import Any, Callable, Dict, Iterable, List, Optional, Set, Tuple, Type, Union

from ._device import Device, Record, from_record, to_record
from ._errors import ZQError
from ._native import Native, PathName
from ._tables import ErrorNumber, Scanner
from ._text import decode, encode

SCAN_LIMIT = 30.0
"""The longest time in seconds that one scan takes."""

# The longest module list of a device type, and so the longest name, has 4094 characters.
_MODULE_NAME_SIZE = 4096

Scanners = Union[Scanner, Iterable[Scanner]]


@dataclass(frozen=True)
class Progress:
    """How far a scan is."""

    elapsed: float
    """seconds since it was asked for"""
    limit: float
    """seconds that it takes at most; those that it waits for another scan of this process come on top"""
    scanner: Optional[Scanner]
    """the scanner at work; None for the configured ones, which work at the same time"""


class RunningScan:
    """A scan in a thread of its own. It can't be stopped: left alone, it replaces the device list when it ends.
    Thread-safe."""

    def __init__(self, scanners: Tuple[Scanner, ...]) -> None:
        self._scanners = scanners
        self._scanner = scanners[0] if scanners else None
        self._begin = time.monotonic()
        self._ended = threading.Event()
        self._devices: List[Device] = []
        self._error: Optional[BaseException] = None

    def progress(self) -> Progress:
        limit = SCAN_LIMIT * max(1, len(self._scanners))
        return Progress(time.monotonic() - self._begin, limit, self._scanner)

    def done(self) -> bool:
        return self._ended.is_set()

    def wait(self, timeout: Optional[float] = None) -> bool:
        """Waits so many seconds for the scan's end, without a number as long as it takes; whether it has ended."""
        return self._ended.wait(timeout)

    def result(self, timeout: Optional[float] = None) -> List[Device]:
        """The devices found. Raises what made the scan fail, or TimeoutError when it has not ended after so many
        seconds."""
        if not self.wait(timeout):
            raise TimeoutError("the scan has not ended")
        if self._error is not None:
            raise self._error
        return list(self._devices)

    def _run(self, find: Callable[["RunningScan"], List[Device]]) -> None:
        try:
            self._devices = find(self)
        except BaseException as error:  # raised again by result()
            self._error = error
        finally:
            self._ended.set()


class Library:
    """The initialised library: counted up by the constructor, down by close() or at the end of a `with` block. Several
    may live at once; they share the one device list of the process.

    path: the library's file, or the folder of its kit. By default the file that the environment variable ZQSDK_LIBRARY
    names by an absolute path, the one beside this package, or the one that the system finds.

    Every operation raises ZQError with the number that the C library returned; the numbers that are named with an
    operation are those it is responsible for. After close() each raises ZQ_ERR_NOT_INITIALISED. Texts are str; bytes
    from a device that are no text of the system's encoding (UTF-8; on Windows the ANSI code page) come as lone
    surrogates, as file names do, and go back as they were. A text that can't be passed as it is: ZQ_ERR_BAD_VALUE, or
    ZQ_ERR_TEXT_TOO_LONG for a Device's field of more than 64 bytes.

    Thread-safe. The operations wait for each other, but for scans.
    """

    # A scan and the reading of what it found: the list belongs to the process.
    _scan_lock = threading.Lock()

    def __init__(self, path: Optional[PathName] = None) -> None:
        """The first one reads the device list file and fails with that one's error, else ZQ_ERR_LIBRARY_NOT_LOADED or
        ZQ_ERR_ENTRY_POINT_MISSING."""
        self._lock = threading.Lock()
        self._running: Set[RunningScan] = set()
        self._closed = True
        self._native = Native(path)
        self._native.call("ZQDEV_InitLibrary")
        self._closed = False

    def __enter__(self) -> "Library":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 traceback: Optional[TracebackType]) -> None:
        # Whoever interrupts a program wants it to end.
        self._close(wait=kind is not KeyboardInterrupt)

    def close(self) -> None:
        """Counts down, once; saves nothing. Waits for this object's scans to end, as the end of a `with` block does, but
        for one that KeyboardInterrupt ends."""
        self._close(wait=True)

    @property
    def closed(self) -> bool:
        return self._closed

    @property
    def file(self) -> str:
        """The library's file, as it was loaded."""
        return self._native.file

    # ---- device list

    def devices(self) -> List[Device]:
        """The whole list, in its order. When another thread shortens it meanwhile, what is left of it."""
        self._check_open()
        return self._devices()

    def count(self) -> int:
        """Number of devices in the list."""
        self._check_open()
        return self._count("ZQDEV_GetNofDevices")

    def device(self, index: int) -> Device:
        """The device at the index, counted from 0. Past the end: ZQ_ERR_BAD_INDEX."""
        if not 0 <= index <= 0xFFFFFFFF:
            raise ZQError(ErrorNumber.ZQ_ERR_BAD_INDEX, "Library.device", str(index))
        record = Record()
        self._call("ZQDEV_GetDevice", index, ctypes.byref(record))
        return from_record(record)

    def add(self, device: Device) -> None:
        """Appends the device under a new name, "Camera" and its place in the list; its own name is ignored. Identifiers
        are not checked for duplicates. A control character: ZQ_ERR_BAD_VALUE."""
        self._call("ZQDEV_AddDevice", to_record(device))

    def modify(self, device: Device) -> None:
        """Replaces the first device that has this one's device_id, its name included. None has it: ZQ_ERR_BAD_INDEX. A
        control character, or a name that the list file could not give back: ZQ_ERR_BAD_VALUE."""
        self._call("ZQDEV_ModifyDevice", to_record(device))

    def remove(self, device_id: str) -> None:
        """Removes the first device with this identifier; none is no error."""
        self._call("ZQDEV_RemoveDevice", encode(device_id, "Library.remove"))

    def save(self) -> None:
        """Writes the list to the device list file, the only place where a scan or an edit outlives the process. An empty
        list is written but can't be read back."""
        self._call("ZQDEV_SaveDeviceConfig")

    def load(self) -> None:
        """Replaces the list by the file's content; after an error the list is empty."""
        self._call("ZQDEV_LoadDeviceConfig")

    # ---- scanning

    def scan(self, scanners: Scanners = (), progress: Optional[Callable[[Progress], None]] = None,
             interval: float = 0.1) -> List[Device]:
        """Replaces the list by what these scanners find, by default those configured in ZQAPI.ini, and gives it. At most
        30 s for each scanner; the configured ones work at the same time, others one after the other.

        A scanner that fails finds nothing. The configured ones: none at all is ZQ_ERR_INI_KEY_MISSING, an unknown one
        ZQ_ERR_BAD_VALUE; the list is then as it was.

        progress is called at once and then every `interval` seconds, in the caller's thread. What it raises is raised
        from here, as is KeyboardInterrupt; the scan then goes on alone (see RunningScan).
        """
        running = self.start_scan(scanners)
        while True:
            if progress is not None:
                progress(running.progress())
            if running.wait(interval):
                return running.result()

    def start_scan(self, scanners: Scanners = ()) -> RunningScan:
        """The same in a thread of its own; returns at once. Scans of one process work one after the other, so that each
        gives what it found itself."""
        wanted = (scanners,) if isinstance(scanners, Scanner) else tuple(Scanner(scanner) for scanner in scanners)
        running = RunningScan(wanted)
        with self._lock:
            self._check_open()
            threading.Thread(target=self._run_scan, args=(running,), name="zqdevice scan", daemon=True).start()
            self._running.add(running)
        return running

    def rescan(self, device: Device) -> Device:
        """Asks the device's scanner for it anew: the device with its present addresses and firmware version. The list is
        not changed. Not found any more: ZQ_ERR_DEVICE_NOT_FOUND, after the scanner's whole listening time (30 s at
        most)."""
        record = to_record(device)
        self._call("ZQDEV_RescanDevice", ctypes.byref(record))
        return from_record(record)

    def change_net_address(self, device: Device, new_address: str) -> None:
        """Gives a network camera a new IPv4 address (dotted decimal; the mask is that of its class) and waits for it
        there; at least 2 s. The list is not changed. No usable host address: ZQ_ERR_BAD_NEW_ADDRESS, and nothing has
        been sent.

        Whoever answers at the device's ccm_address is commanded: make sure with rescan() who that is. Success says that
        the commands were answered, not that the camera has moved: look for it afterwards."""
        self._call("ZQDEV_ChangeDeviceNetAddr", to_record(device), encode(new_address, "Library.change_net_address"))

    # ---- modules of a device type, from its camera configuration file; a type that can be no file name:
    # ZQ_ERR_BAD_VALUE

    def default_ccm(self, device_type: str) -> str:
        """The camera control module that the device type is used with."""
        return self._text("ZQDEV_GetDefaultCCM", encode(device_type, "Library.default_ccm"))

    def default_iam(self, device_type: str) -> str:
        """The image acquisition module that the device type is used with."""
        return self._text("ZQDEV_GetDefaultIAM", encode(device_type, "Library.default_iam"))

    def supported_ccms(self, device_type: str) -> List[str]:
        """All camera control modules that the device type can be used with."""
        data = encode(device_type, "Library.supported_ccms")
        return self._texts("ZQDEV_GetNofSupportedCCMs", "ZQDEV_GetSupportedCCM", data)

    def supported_iams(self, device_type: str) -> List[str]:
        """All image acquisition modules that the device type can be used with."""
        data = encode(device_type, "Library.supported_iams")
        return self._texts("ZQDEV_GetNofSupportedIAMs", "ZQDEV_GetSupportedIAM", data)

    def supported_device_types(self) -> List[str]:
        """Reserved: this version of the library names none."""
        return self._texts("ZQDEV_GetNofSupportedDeviceTypes", "ZQDEV_GetSupportedDevice")

    # ---- inside

    def _close(self, wait: bool) -> None:
        with self._lock:
            if self._closed:
                return
            self._closed = True
            running = list(self._running) if wait else []
        try:
            for scan in running:
                scan.wait(scan.progress().limit + SCAN_LIMIT)
        finally:
            self._native.call("ZQDEV_DeInitLibrary")

    def _check_open(self) -> None:
        if self._closed:
            raise ZQError(ErrorNumber.ZQ_ERR_NOT_INITIALISED, "Library", "it is closed")

    def _call(self, function: str, *arguments: Any) -> None:
        self._check_open()
        self._native.call(function, *arguments)

    def _count(self, function: str, *arguments: Any) -> int:
        count = ctypes.c_uint(0)
        self._native.call(function, *arguments, ctypes.byref(count))
        return count.value

    def _devices(self) -> List[Device]:
        devices: List[Device] = []
        record = Record()
        for index in range(self._count("ZQDEV_GetNofDevices")):
            try:
                self._native.call("ZQDEV_GetDevice", index, ctypes.byref(record))
            except ZQError as error:
                if error.number == ErrorNumber.ZQ_ERR_BAD_INDEX:
                    break
                raise
            devices.append(from_record(record))
        return devices

    def _text(self, function: str, *arguments: Any) -> str:
        buffer = ctypes.create_string_buffer(_MODULE_NAME_SIZE)
        self._call(function, *arguments, buffer, _MODULE_NAME_SIZE - 1)
        return decode(buffer.value)

    def _texts(self, count_function: str, text_function: str, *arguments: Any) -> List[str]:
        self._check_open()
        count = self._count(count_function, *arguments)
        return [self._text(text_function, *arguments, index) for index in range(count)]

    def _run_scan(self, running: RunningScan) -> None:
        running._run(self._find)
        with self._lock:
            self._running.discard(running)

    # In the scan's thread; also while close() waits for it.
    def _find(self, running: RunningScan) -> List[Device]:
        with self._scan_lock:
            if not running._scanners:
                self._native.call("ZQDEV_ScanForDevices")
                return self._devices()
            found: Dict[str, Device] = {}
            for scanner in running._scanners:
                running._scanner = scanner
                self._native.call("ZQDEV_ScanForDevicesWithScanner", int(scanner))
                for device in self._devices():
                    found.setdefault(device.device_id, device)
            if len(running._scanners) > 1:
                self._replace_list(found.values())
            return self._devices()

    def _replace_list(self, devices: Iterable[Device]) -> None:
        for device in self._devices():
            self._native.call("ZQDEV_RemoveDevice", encode(device.device_id, "Library.scan"))
        for device in devices:
            self._native.call("ZQDEV_AddDevice", to_record(device))


def scan(scanners: Scanners = (), progress: Optional[Callable[[Progress], None]] = None,
         path: Optional[PathName] = None) -> List[Device]:
    """One scan with a Library of its own: see Library.scan."""
    with Library(path) as library:
        return library.scan(scanners, progress)
