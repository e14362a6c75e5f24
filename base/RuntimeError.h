// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace ravlo
{

// The only exception type of the system: an automation run-time error number, which hosts know from
// Err.Number, and a description for people. Copies share their texts, so copying never fails.
class RuntimeError : public std::exception
{
public:
    // An error with the standard description of its number.
    explicit RuntimeError(std::int32_t lNumber);
    RuntimeError(std::int32_t lNumber, std::wstring sDescription);

    std::int32_t Number() const noexcept { return m_lNumber; }
    const std::wstring& Description() const noexcept { return m_cTexts->sDescription; }
    const char* what() const noexcept override { return m_cTexts->sWhat.c_str(); }

private:
    struct Texts
    {
        std::wstring sDescription;
        std::string
            sWhat; // the description with anything outside ASCII as '?', for test output and debuggers
    };
    std::int32_t m_lNumber;
    std::shared_ptr<const Texts> m_cTexts; // never null
};

// The automation run-time error numbers the system raises.
namespace error
{
inline constexpr std::int32_t InvalidProcedureCall = 5;
inline constexpr std::int32_t Overflow = 6;
inline constexpr std::int32_t OutOfMemory = 7;
inline constexpr std::int32_t SubscriptOutOfRange = 9;
inline constexpr std::int32_t TypeMismatch = 13;
inline constexpr std::int32_t UserInterrupt = 18;
inline constexpr std::int32_t Internal = 51;
inline constexpr std::int32_t BadFileName = 52;
inline constexpr std::int32_t FileNotFound = 53;
inline constexpr std::int32_t FileAlreadyOpen = 55;
inline constexpr std::int32_t DeviceIo = 57;
inline constexpr std::int32_t FileAlreadyExists = 58;
inline constexpr std::int32_t DiskFull = 61;
inline constexpr std::int32_t InputPastEnd = 62;
inline constexpr std::int32_t PermissionDenied = 70;
inline constexpr std::int32_t PathFileAccess = 75;
inline constexpr std::int32_t PathNotFound = 76;
inline constexpr std::int32_t ObjectNotSet = 91;
inline constexpr std::int32_t InvalidFileFormat = 321; // of the database: damaged, foreign or newer
inline constexpr std::int32_t NotImplemented = 445;
inline constexpr std::int32_t KeyAlreadyExists = 457;
} // namespace error

// The standard description of a run-time error number, e.g. "File not found" for 53;
// "Application-defined or object-defined error" for a number without one.
std::wstring StandardDescription(std::int32_t lNumber);

} // namespace ravlo
