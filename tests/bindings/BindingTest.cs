// The C# binding against the kit's library and two simulated cameras: see with-cameras.
using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using System.Threading;
using ZQAPI;

internal static class BindingTest {
    private static void Expect(bool holds, string what) {
        if (!holds) {
            throw new InvalidOperationException("does not hold: " + what);
        }
    }

    private static void ExpectError(ErrorNumber number, Action action) {
        try {
            action();
        } catch (ZQDeviceException error) {
            Expect(error.Number == (int)number && error.Name == number.ToString() && error.Text != "unknown error" &&
                   error.Message.Contains(error.Text), error.Message + " instead of " + number);
            return;
        }
        Expect(false, "throws " + number);
    }

    private static void Layout() {
        Expect(Marshal.SizeOf(typeof(Record)) == Tables.RecordSize, "size of the record");
        foreach (KeyValuePair<string, int> field in Tables.FieldOffsets) {
            var place = (Device.Field)Enum.Parse(typeof(Device.Field), field.Key);
            Expect((int)place * Tables.FieldSize == field.Value, "offset of " + field.Key);
        }
    }

    private static void Scans(Library library) {
        List<Device> found = library.Scan();
        IEnumerable<string> addresses = found.Select(device => device.UsedAddress).OrderBy(address => address);
        Expect(addresses.SequenceEqual(new[] { "127.0.0.11", "127.0.0.12" }), "both cameras");
        Expect(found.All(device => device.Scanner == Scanner.ZqUdp), "their scanner");

        Device moved = found[0].Clone();
        moved.UsedAddress = "10.0.0.1";
        Expect(library.Rescan(moved).UsedAddress == found[0].UsedAddress, "found again");
        moved.DeviceID = "nobody";
        ExpectError(ErrorNumber.ZQ_ERR_DEVICE_NOT_FOUND, () => library.Rescan(moved));
        ExpectError(ErrorNumber.ZQ_ERR_BAD_INDEX, () => library.Modify(moved));
        ExpectError(ErrorNumber.ZQ_ERR_BAD_NEW_ADDRESS, () => library.ChangeNetAddress(found[0], "nowhere"));
        ExpectError(ErrorNumber.ZQ_ERR_BAD_INDEX, () => library.GetDevice(2));
        ExpectError(ErrorNumber.ZQ_ERR_BAD_INDEX, () => library.GetDevice(-1));
        ExpectError(ErrorNumber.ZQ_ERR_NULL_INPUT, () => library.Scan((Scanner)99));

        Expect(library.GetSupportedCCMs("ZQNetCam-2M").Contains(library.GetDefaultCCM("ZQNetCam-2M")), "modules");
        Expect(library.GetSupportedIAMs("ZQNetCam-2M").Contains(library.GetDefaultIAM("ZQNetCam-2M")), "modules");
        Expect(library.GetSupportedDeviceTypes().Count == 0, "reserved");
        ExpectError(ErrorNumber.ZQ_ERR_BAD_VALUE, () => library.GetDefaultCCM("../secret"));
        Expect(library.Scan(Scanner.Manual).Count == 0 && library.Count == 0, "by hand");
    }

    private static void Records(Library library) {
        library.Load();
        foreach (string text in new[] { "Küche", "東 1", new string('x', 63) }) {
            library.Add(new Device { DeviceID = text, CCM = "CCM_ZQ_VIRTUAL", FirmwareVersion = new string('y', 64) });
            Device added = library.GetDevice(1);
            Expect(added.Name == "Camera2" && added.UsedScanner == "SCANNER_MANUAL", "defaults");
            added.Name = text;
            library.Modify(added);
            library.Save();
            library.Load();
            Device read = library.GetDevices().Last();
            Expect(read.Name == text && read.DeviceID == text && read.FirmwareVersion.Length == 64 &&
                   read.IAMAddress == "?", text);
            library.Remove(text);
            Expect(library.Count == 1, "removed");
        }
        library.Save();

        var device = new Device { DeviceDesc = "before" };
        foreach (string text in new[] { new string('x', 65), new string('ü', 33) }) {
            ExpectError(ErrorNumber.ZQ_ERR_TEXT_TOO_LONG, () => device.DeviceDesc = text);
        }
        foreach (string text in new[] { "a\0b", "\ud800" }) {
            ExpectError(ErrorNumber.ZQ_ERR_BAD_VALUE, () => device.DeviceDesc = text);
        }
        Expect(device.DeviceDesc == "before", "as it was");
        ExpectError(ErrorNumber.ZQ_ERR_NULL_INPUT, () => library.Remove(null));
        ExpectError(ErrorNumber.ZQ_ERR_NULL_INPUT, () => library.Add(null));

        // Bytes that are no text go back as they came.
        byte[] record = new Device().ToRecord();
        int place = (int)Device.Field.DeviceID * Tables.FieldSize;
        record[place] = 0xFC;
        library.Add(new Device(record));
        Device stray = library.GetDevice(1);
        stray.DeviceDesc = "changed";
        library.Modify(stray);
        Expect(library.GetDevice(1).ToRecord()[place] == 0xFC && library.GetDevice(1).DeviceDesc == "changed",
               "stray byte");
    }

    private static void TwoThreads(Library library) {
        int network = 0, byHand = 0;
        var threads = new[] { new Thread(() => network = library.Scan(Scanner.ZqUdp).Count),
                              new Thread(() => byHand = 1 + library.Scan(Scanner.Manual).Count) };
        foreach (Thread thread in threads) {
            thread.Start();
        }
        foreach (Thread thread in threads) {
            Expect(thread.Join(60000), "a scan ends");
        }
        Expect(network == 2 && byHand == 1, "each thread has what its own scan found");
    }

    // What Mono does at a safe point in the middle of passing a record.
    private static void EditsWhileGarbageIsCollected(Library library) {
        int editing = 4;
        for (int i = editing; i > 0; --i) {
            new Thread(() => {
                for (int round = 0; round < 500; ++round) {
                    library.Add(new Device { DeviceID = "passing" });
                    library.Remove("passing");
                }
                Interlocked.Decrement(ref editing);
            }).Start();
        }
        while (Volatile.Read(ref editing) > 0) {
            GC.Collect();
        }
    }

    private static int Main() {
        Layout();
        using (var library = new Library()) {
            Scans(library);
            Records(library);
            TwoThreads(library);
            EditsWhileGarbageIsCollected(library);

            var closed = new Library();
            closed.Dispose();
            closed.Dispose();
            ExpectError(ErrorNumber.ZQ_ERR_NOT_INITIALISED, () => closed.GetDevices());
            library.Load();
            Expect(library.Count == 1, "the others count on");
        }
        string module = Environment.GetEnvironmentVariable("ZQSDK_LIBRARY") + "/CCMs/ZQCCMUdpAPI.so";
        ExpectError(ErrorNumber.ZQ_ERR_ENTRY_POINT_MISSING, () => new Library(module));
        return 0;
    }
}
