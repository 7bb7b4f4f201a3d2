// Prints the devices of this machine; with the argument "scan" it looks for them first.
//     mcs FirstProgram.cs ZQDevice.cs && mono FirstProgram.exe scan
using System;
using ZQAPI;

internal static class FirstProgram {
    private static int Main(string[] arguments) {
        try {
            using (var library = new Library()) {
                if (Array.IndexOf(arguments, "scan") >= 0) {
                    library.Scan();
                }
                foreach (Device device in library.GetDevices()) {
                    Console.WriteLine(device.Name + ": " + device.DeviceID + " at " + device.UsedAddress);
                }
            }
            return 0;
        } catch (ZQDeviceException error) {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }
}
