"""The Python package against the kit's library and two simulated cameras: see with-cameras."""
import ctypes
import dataclasses
import os
import pathlib
import re
import subprocess
import sys
import threading
from typing import Iterator, List

import pytest

import zqdevice
from zqdevice import Device, ErrorNumber, Library, Scanner, ZQError, _device, _native, _tables

ROOT = pathlib.Path(__file__).resolve().parents[2]
ADDRESSES = {"127.0.0.11", "127.0.0.12"}


@pytest.fixture
def library() -> Iterator[Library]:
    with Library() as opened:
        opened.load()
        yield opened


@pytest.fixture
def saved_list() -> Iterator[pathlib.Path]:
    file = pathlib.Path(os.environ["ZQSDK_CONFIG_DIR"], "Devices.ini")
    before = file.read_bytes()
    yield file
    file.write_bytes(before)


class Raises:
    """The block ends with this number."""

    def __init__(self, number: ErrorNumber) -> None:
        self._number = number

    def __enter__(self) -> None:
        pass

    def __exit__(self, kind: object, error: object, traceback: object) -> bool:
        assert isinstance(error, ZQError), error
        assert (error.number, error.name) == (self._number, self._number.name)
        assert error.text and error.text in str(error) and str(int(self._number)) in str(error)
        return True


def test_agrees_with_the_headers() -> None:
    subprocess.run([sys.executable, str(ROOT / "bindings/generate"), "--check"], check=True)
    assert ctypes.sizeof(_device.Record) == _tables.RECORD_SIZE
    offsets = {name: getattr(_device.Record, name).offset for name in _tables.FIELD_OFFSETS}
    assert offsets == _tables.FIELD_OFFSETS
    assert [field.name for field in dataclasses.fields(Device)] == list(offsets)

    exported = set(re.findall(r"^\s+(ZQDEV_\w+)$", (ROOT / "src/api/ZQDeviceAPI.def").read_text(), re.M))
    assert len(exported) == 21
    assert set(_native.FUNCTIONS) == exported
    csharp = (ROOT / "bindings/csharp/ZQDevice.cs").read_text()
    bound = re.findall(r'Bind\("ZQDEV_(\w+)", out (\w+)\)', csharp)
    assert {f"ZQDEV_{name}" for name, _ in bound} == exported
    assert all(name == member for name, member in bound)


def test_scans(library: Library) -> None:
    told: List[zqdevice.Progress] = []
    found = library.scan(progress=told.append)
    assert {device.used_address for device in found} == ADDRESSES
    assert {device.scanner for device in found} == {Scanner.ZQ_UDP}
    assert found == library.devices() and library.count() == 2 and found[1] == library.device(1)
    assert len(told) > 2 and told[0].limit == zqdevice.SCAN_LIMIT and told[0].scanner is None
    assert [progress.elapsed for progress in told] == sorted(progress.elapsed for progress in told)

    # One after the other; the list has all, also when the last one finds nothing.
    assert library.scan([Scanner.ZQ_UDP, Scanner.MANUAL]) == library.devices() == library.devices()
    assert {device.used_address for device in library.devices()} == ADDRESSES
    assert library.scan(Scanner.MANUAL) == [] == library.devices()
    with pytest.raises(ValueError):
        library.scan([99])  # type: ignore[list-item]


def test_threads_get_what_their_own_scan_found(library: Library) -> None:
    network = [library.start_scan(Scanner.ZQ_UDP) for _ in range(2)]
    by_hand = library.start_scan(Scanner.MANUAL)
    with pytest.raises(TimeoutError):
        network[0].result(0)
    assert all(len(running.result(60)) == 2 and running.done() for running in network)
    assert by_hand.result(60) == []


def test_exception_while_a_scan_runs() -> None:
    class Enough(Exception):
        pass

    def stop(progress: zqdevice.Progress) -> None:
        raise Enough

    with Library() as other:
        with pytest.raises(Enough):
            with Library() as library:
                library.scan(progress=stop)
        # Closing waited for the scan.
        assert {device.used_address for device in other.devices()} == ADDRESSES
    with Library() as library:
        library.load()


def test_known_and_unknown_devices(library: Library) -> None:
    camera = library.scan(Scanner.ZQ_UDP)[0]
    assert library.rescan(dataclasses.replace(camera, used_address="10.0.0.1")) == camera
    with Raises(ErrorNumber.ZQ_ERR_DEVICE_NOT_FOUND):
        library.rescan(dataclasses.replace(camera, device_id="nobody"))
    with Raises(ErrorNumber.ZQ_ERR_BAD_INDEX):
        library.modify(dataclasses.replace(camera, device_id="nobody"))
    for index in (-1, 2, 2**32):
        with Raises(ErrorNumber.ZQ_ERR_BAD_INDEX):
            library.device(index)
    with Raises(ErrorNumber.ZQ_ERR_BAD_NEW_ADDRESS):
        library.change_net_address(camera, "127.0.0.255.1")
    library.remove("nobody")
    assert library.count() == 2

    assert library.default_ccm("ZQNetCam-2M") in library.supported_ccms("ZQNetCam-2M")
    assert library.default_iam("ZQNetCam-2M") in library.supported_iams("ZQNetCam-2M")
    assert library.supported_device_types() == []
    for query in (library.default_ccm, library.supported_iams):
        with Raises(ErrorNumber.ZQ_ERR_BAD_VALUE):
            query("../secret")


@pytest.mark.parametrize("name", ["Küche", "東 1", "stray \udcfc byte", "x" * 63])
def test_texts_come_back_as_they_went(library: Library, saved_list: pathlib.Path, name: str) -> None:
    library.add(Device(device_id=name, device_desc=name, ccm="CCM_ZQ_VIRTUAL", firmware_version="y" * 64))
    added = library.devices()[-1]
    assert added.name == "Camera2"
    named = dataclasses.replace(added, name=name)
    library.modify(named)
    library.save()
    library.load()
    assert library.devices()[-1] == named
    assert name.encode("utf-8", "surrogateescape") in saved_list.read_bytes()

    printed = subprocess.run([sys.executable, "-m", "zqdevice"], check=True, stdout=subprocess.PIPE).stdout
    assert printed.decode("utf-8").count(name.replace("\udcfc", r"\xfc")) == 2

    library.remove(name)
    assert library.count() == 1


def test_refused_texts(library: Library) -> None:
    for text, number in (
        ("x" * 65, ErrorNumber.ZQ_ERR_TEXT_TOO_LONG),
        ("ü" * 33, ErrorNumber.ZQ_ERR_TEXT_TOO_LONG),
        ("a\0b", ErrorNumber.ZQ_ERR_BAD_VALUE),
        ("\ud800", ErrorNumber.ZQ_ERR_BAD_VALUE),
        ("a\nb", ErrorNumber.ZQ_ERR_BAD_VALUE),
    ):
        with Raises(number):
            library.add(Device(device_id="x", device_desc=text))
    with Raises(ErrorNumber.ZQ_ERR_BAD_VALUE):
        library.remove("a\0b")
    assert library.count() == 1


def test_closed_library(library: Library) -> None:
    closed = Library()
    closed.close()
    closed.close()
    assert closed.closed and not library.closed
    for call in (closed.devices, closed.count, closed.save, closed.scan, closed.supported_device_types,
                 lambda: closed.add(Device()), lambda: closed.device(0)):
        with Raises(ErrorNumber.ZQ_ERR_NOT_INITIALISED):
            call()
    assert library.count() == 1  # the others count on


def test_edits_from_two_threads(library: Library) -> None:
    def edit(prefix: str) -> None:
        for number in range(200):
            library.add(Device(device_id=f"{prefix}{number}"))
            library.devices()
            library.remove(f"{prefix}{number}")

    threads = [threading.Thread(target=edit, args=(prefix,)) for prefix in "ab"]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(60)
    assert [device.device_id for device in library.devices()] == ["VirtualCamera:1"]


def test_library_file(library: Library, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    kit = os.environ["ZQSDK_LIBRARY"]
    assert library.file == os.path.join(kit, _native.LIBRARY_FILE)
    assert _native.find_library(pathlib.Path(kit)) == library.file
    monkeypatch.setenv("ZQSDK_LIBRARY", "relative")
    assert _native.find_library() == _native.LIBRARY_FILE
    monkeypatch.setattr(_native, "LIBRARY_FILE", "libabsent.so")
    with pytest.raises(ZQError) as nowhere:
        Library("")
    assert str(ROOT / "python") in str(nowhere.value) and "ZQSDK_LIBRARY" in str(nowhere.value)
    with Raises(ErrorNumber.ZQ_ERR_LIBRARY_NOT_LOADED):
        Library(tmp_path)
    with Raises(ErrorNumber.ZQ_ERR_ENTRY_POINT_MISSING):
        Library(os.path.join(kit, "CCMs", "ZQCCMUdpAPI.so"))


def test_as_a_program() -> None:
    def run(*arguments: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run([sys.executable, "-m", "zqdevice", *arguments], capture_output=True, text=True)

    scanned = run("--scan")
    assert scanned.returncode == 0 and all(address in scanned.stdout for address in ADDRESSES), scanned
    assert scanned.stdout == run("--scanner", "ZQ_UDP").stdout and scanned.stderr == ""
    failed = run("--library", "/nowhere")
    assert failed.returncode == 1 and "-130000, ZQ_ERR_LIBRARY_NOT_LOADED" in failed.stderr
    assert run("--scanner", "nobody").returncode == 2
