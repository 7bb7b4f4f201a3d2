"""python -m zqdevice: lists the saved devices; with --scan or --scanner NAME looks for them first, saving nothing."""
import argparse
import sys
from typing import List, Optional

from . import Device, Library, Progress, Scanner, ZQError
from ._text import printable


def _show_progress(progress: Progress) -> None:
    if sys.stderr.isatty():
        what = "Scanning" if progress.scanner is None else f"Scanning with {progress.scanner.name}"
        print(f"\r\033[K{what}: {progress.elapsed:.0f} s of at most {progress.limit:.0f} s", end="", file=sys.stderr,
              flush=True)


def _erase_progress() -> None:
    if sys.stderr.isatty():
        print("\r\033[K", end="", file=sys.stderr, flush=True)


def _print_table(devices: List[Device]) -> None:
    rows = [("NAME", "IDENTIFIER", "TYPE", "ADDRESS")]
    for device in devices:
        texts = (device.name, device.device_id, device.device_type_by_name, device.used_address)
        name, identifier, device_type, address = map(printable, texts)
        rows.append((name, identifier, device_type, address))
    widths = [max(map(len, column)) for column in zip(*rows)]
    for row in rows:
        print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())


def main(arguments: Optional[List[str]] = None) -> int:
    parser = argparse.ArgumentParser(prog="python -m zqdevice", description="Lists the cameras of this machine.")
    parser.add_argument("--library", metavar="PATH", help="the library's file, or the folder of its kit")
    parser.add_argument("--scan", action="store_true", help="look for them first, with the configured scanners")
    parser.add_argument("--scanner", action="append", default=[], choices=Scanner.__members__, metavar="NAME",
                        help="look for them with this scanner, ZQ_UDP for one; may be given several times")
    options = parser.parse_args(arguments)
    for stream in (sys.stdout, sys.stderr):
        # A character that the stream's encoding lacks is escaped.
        if hasattr(stream, "reconfigure"):
            stream.reconfigure(errors="backslashreplace")
    try:
        with Library(options.library) as library:
            try:
                if options.scan or options.scanner:
                    library.scan([Scanner[name] for name in options.scanner], _show_progress)
            finally:
                _erase_progress()
            _print_table(library.devices())
    except ZQError as error:
        print(f"zqdevice: {printable(str(error))}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())
