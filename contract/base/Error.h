#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tessel {

/// One failure with its parts kept apart. The sentence shown to a person is composed at the edge.
/// Warnings and notices of a database come in the same form, with the number `information`.
struct ErrorInfo {
  std::int32_t number = 0;       ///< The system's own error number; 0 means "no error".
  std::int32_t nativeError = 0;  ///< The database's own code, or the system's of a file; else 0.
  std::string sqlState;          ///< Five characters as in ISO/IEC 9075, or empty.
  std::string source;            ///< Who reports: the provider, the driver, "Tessel".
  std::string description;       ///< The text as the source gave it, UTF-8.
  /// What the source names as help on the failure; empty and 0: nothing.
  std::string helpFile;
  std::int32_t helpContext = 0;
};

/// Error numbers used by this program. Code tells failures apart by these, never by their texts.
namespace errorNumber {
inline constexpr std::int32_t application =
    -2147220991;  ///< 0x80040201: raised by the program's own rules.
inline constexpr std::int32_t noInterface =
    -2147467262;  ///< 0x80004002 (E_NOINTERFACE): never counted or listed.
inline constexpr std::int32_t database =
    -2147467259;                                 ///< 0x80004005: a provider's unspecified error.
inline constexpr std::int32_t cancelled = 3712;  ///< An operation ended because it was cancelled.
inline constexpr std::int32_t objectClosed = 3704;      ///< Not allowed while the object is closed.
inline constexpr std::int32_t objectOpen = 3705;        ///< Not allowed while the object is open.
inline constexpr std::int32_t itemNotFound = 3265;      ///< No item of that name or number.
inline constexpr std::int32_t noCurrentRecord = 3021;   ///< BOF, EOF or a deleted row.
inline constexpr std::int32_t providerNotFound = 3706;  ///< No such provider or driver.
inline constexpr std::int32_t notSupported = 3251;      ///< The provider cannot do it.
inline constexpr std::int32_t typeMismatch = 3421;      ///< The value is not of the field's type.
inline constexpr std::int32_t readOnly = 3252;       ///< The rows or the field cannot be changed.
inline constexpr std::int32_t changePending = 3253;  ///< Another change waits to be written first.
inline constexpr std::int32_t changeConflict =
    3254;  ///< The row was changed or deleted by somebody else, or matches several rows.
inline constexpr std::int32_t file = 53;  ///< A file cannot be opened, read or written.
inline constexpr std::int32_t information = 0x00040EDA;  ///< A notice or warning, not a failure.
}  // namespace errorNumber

/// The one exception type that crosses the program's own interfaces. what() is the description. It
/// may be copied and thrown again on another thread than the one it was made on.
class Error : public std::runtime_error {
 public:
  /// `info.number` is not 0.
  explicit Error(ErrorInfo info) : std::runtime_error(info.description), info_(std::move(info)) {}
  /// One without codes of a database or help.
  Error(std::int32_t number, std::string source, std::string description)
      : Error(ErrorInfo{number, 0, {}, std::move(source), std::move(description), {}, 0}) {}

  /// Valid as long as the error.
  [[nodiscard]] const ErrorInfo& Info() const noexcept { return info_; }
  [[nodiscard]] std::int32_t Number() const noexcept { return info_.number; }
  [[nodiscard]] const std::string& Description() const noexcept { return info_.description; }

 private:
  ErrorInfo info_;
};

}  // namespace tessel
