"""Prints the devices of this machine; with the argument "scan" it looks for them first."""
import sys

import zqdevice


def main() -> int:
    try:
        with zqdevice.Library() as library:
            if "scan" in sys.argv[1:]:
                library.scan()
            for device in library.devices():
                print(f"{device.name}: {device.device_id} at {device.used_address}")
    except zqdevice.ZQError as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
