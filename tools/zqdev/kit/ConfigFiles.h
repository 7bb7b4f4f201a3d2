// The kit's sealed configuration files, handled without the library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZQAPI::zqdev {

// Whether there is nothing of this name: what can't be seen for lack of permission is not missing.
bool IsMissing(const std::string& file);

// Why the system does not let this process read the file, or replace it by one that is a little longer; empty when
// it does. Nothing is changed.
std::string ReadingObstacle(const std::string& file);
std::string WritingObstacle(const std::string& file);

// What is wrong with the file's seal: 0 when it is right, else the error number. Changes nothing.
int SealError(const std::string& file);

// Seals the file or renews its seal; the checksum. Throws CZQException.
std::uint32_t Seal(const std::string& file);

// Whether the file can be read and has a list of devices; and whether that has no entry.
bool IsDeviceList(const std::string& file);
bool IsDeviceListEmpty(const std::string& file);

// Why what the file holds is no INI text; empty when it is, or when the file can't be read.
std::string NoIniTextReason(const std::string& file);

// Sets one key and renews the seal; every other line keeps its bytes. False when somebody else changed the file at
// the same time: nothing was written. Throws CZQException.
bool WriteSetting(const std::string& file, const char* section, const char* key, const std::string& value);

// Makes the folder where there is none, and those that it lies in. Throws Failure.
void MakeFolder(const std::string& folder);

// Writes the file whole or not at all. An existing file is kept as
// FILE.bak. Throws Failure.
void ReplaceFile(const std::string& file, std::string_view content);

}  // namespace ZQAPI::zqdev
