// The rival: the same device list file, read, written and searched with GLib's GKeyFile.
#pragma once

#include <ZQAPI/ZQDeviceAPI.h>
#include <glib.h>

#include <memory>
#include <string>
#include <vector>

namespace ZQAPI::bench {

struct KeyFileDeleter {
    void operator()(GKeyFile* file) const noexcept { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

// Every device of a file, all eleven texts.
std::vector<ZQDEVICEINFO> LoadWithGlib(const std::string& path);
// As durable as the list's own save: the file is replaced whole, and on the disk before it is.
void SaveWithGlib(const std::vector<ZQDEVICEINFO>& devices, const std::string& path);

// A parsed file, and the name of the device with this identifier; empty when there is none.
KeyFile ParseWithGlib(const std::string& path);
std::string FindWithGlib(GKeyFile* file, const std::string& id);

// How many different devices two files hold together.
std::size_t MergeWithGlib(GKeyFile* first, GKeyFile* second);

}  // namespace ZQAPI::bench
