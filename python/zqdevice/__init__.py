"""Which cameras are attached to this machine, how each is reached, and what it is.

    import zqdevice

    with zqdevice.Library() as library:
        for device in library.scan([zqdevice.Scanner.ZQ_UDP]):
            print(device.name, device.device_id, device.used_address)
        library.save()

The functions of the C library ZQDeviceAPI, whose header has their contracts in full. What fails raises ZQError.
"""
from ._device import Device
from ._errors import ZQError
from ._library import SCAN_LIMIT, Library, Progress, RunningScan, scan
from ._tables import ErrorNumber, Scanner

__all__ = [
    "SCAN_LIMIT", "Device", "ErrorNumber", "Library", "Progress", "RunningScan", "Scanner", "ZQError", "scan",
]
