#include "GlibDeviceFile.h"

#include <fcntl.h>
#include <glib/gstdio.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace ZQAPI::bench {

namespace {

struct Key {
    const char* suffix;
    const char* name;
    char (ZQDEVICEINFO::*field)[ZQDEV_FIELD_SIZE];
};

constexpr Key kKeys[] = {
    {"", "DeviceTypeByName", &ZQDEVICEINFO::DeviceTypeByName},
    {"", "DeviceID", &ZQDEVICEINFO::DeviceID},
    {"", "DeviceDesc", &ZQDEVICEINFO::DeviceDesc},
    {"", "FirmwareVersion", &ZQDEVICEINFO::FirmwareVersion},
    {".Scanner", "UsedScanner", &ZQDEVICEINFO::UsedScanner},
    {".Scanner", "UsedAddress", &ZQDEVICEINFO::UsedAddress},
    {".Connections", "CCM", &ZQDEVICEINFO::CCM},
    {".Connections", "CCMAddress", &ZQDEVICEINFO::CCMAddress},
    {".Connections", "IAM", &ZQDEVICEINFO::IAM},
    {".Connections", "IAMAddress", &ZQDEVICEINFO::IAMAddress},
};

struct GFree {
    void operator()(void* memory) const noexcept { g_free(memory); }
};
struct GStrFreeV {
    void operator()(char** texts) const noexcept { g_strfreev(texts); }
};
using Text = std::unique_ptr<char, GFree>;
using Texts = std::unique_ptr<char*, GStrFreeV>;

// The steps of CZQFile::Replace: a file beside it, written, synced, moved over. g_key_file_save_to_file syncs the folder
// as well, which would count against it.
bool Replace(const std::string& path, const char* content, gsize size) {
    std::string temporary = path + ".XXXXXX";
    const int file = g_mkstemp_full(temporary.data(), O_WRONLY, 0666);
    if (file < 0) {
        return false;
    }
    const bool isWritten = write(file, content, size) == static_cast<gssize>(size) && g_fsync(file) == 0;
    return g_close(file, nullptr) != FALSE && isWritten && g_rename(temporary.c_str(), path.c_str()) == 0;
}

Texts DeviceNames(GKeyFile* file) {
    return Texts(g_key_file_get_string_list(file, "General", "Devices", nullptr, nullptr));
}

}  // namespace

KeyFile ParseWithGlib(const std::string& path) {
    // GKeyFile takes no line that is no key: the seal is cut off before it parses.
    char* content = nullptr;
    gsize length = 0;
    if (g_file_get_contents(path.c_str(), &content, &length, nullptr) == FALSE) {
        throw std::runtime_error("can't read " + path);
    }
    const Text owner(content);
    constexpr gsize kSealSize = 19;
    KeyFile file(g_key_file_new());
    if (g_key_file_load_from_data(file.get(), content, length - kSealSize, G_KEY_FILE_NONE, nullptr) ==
        FALSE) {
        throw std::runtime_error("can't parse " + path);
    }
    return file;
}

std::vector<ZQDEVICEINFO> LoadWithGlib(const std::string& path) {
    const KeyFile file = ParseWithGlib(path);
    const Texts names = DeviceNames(file.get());
    std::vector<ZQDEVICEINFO> devices;
    for (char** name = names.get(); *name != nullptr; ++name) {
        ZQDEVICEINFO device{};
        g_strlcpy(device.Name, *name, sizeof device.Name);
        for (const Key& key : kKeys) {
            const std::string section = std::string(*name) + key.suffix;
            const Text value(g_key_file_get_string(file.get(), section.c_str(), key.name, nullptr));
            g_strlcpy(device.*key.field, value.get(), ZQDEV_FIELD_SIZE);
        }
        devices.push_back(device);
    }
    return devices;
}

void SaveWithGlib(const std::vector<ZQDEVICEINFO>& devices, const std::string& path) {
    const KeyFile file(g_key_file_new());
    std::string names;
    for (const ZQDEVICEINFO& device : devices) {
        names += std::string(device.Name) + ";";
    }
    g_key_file_set_value(file.get(), "General", "Devices", names.c_str());
    for (const ZQDEVICEINFO& device : devices) {
        for (const Key& key : kKeys) {
            const std::string section = std::string(device.Name) + key.suffix;
            g_key_file_set_string(file.get(), section.c_str(), key.name, device.*key.field);
        }
    }
    gsize size = 0;
    const Text content(g_key_file_to_data(file.get(), &size, nullptr));
    if (!Replace(path, content.get(), size)) {
        throw std::runtime_error("can't write " + path);
    }
}

std::string FindWithGlib(GKeyFile* file, const std::string& id) {
    const Texts names = DeviceNames(file);
    for (char** name = names.get(); *name != nullptr; ++name) {
        const Text value(g_key_file_get_string(file, *name, "DeviceID", nullptr));
        if (id == value.get()) {
            return *name;
        }
    }
    return {};
}

std::size_t MergeWithGlib(GKeyFile* first, GKeyFile* second) {
    const KeyFile merged(g_key_file_new());
    std::size_t count = 0;
    for (GKeyFile* source : {first, second}) {
        const Texts names = DeviceNames(source);
        for (char** name = names.get(); *name != nullptr; ++name) {
            const Text id(g_key_file_get_string(source, *name, "DeviceID", nullptr));
            if (g_key_file_has_group(merged.get(), id.get()) != FALSE) {
                continue;
            }
            ++count;
            for (const Key& key : kKeys) {
                const std::string section = std::string(*name) + key.suffix;
                const Text value(g_key_file_get_string(source, section.c_str(), key.name, nullptr));
                g_key_file_set_string(merged.get(), id.get(), key.name, value.get());
            }
        }
    }
    return count;
}

}  // namespace ZQAPI::bench
