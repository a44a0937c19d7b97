// Identities of database objects. A ZdDbObjectId names an object within the
// process (64 bits, 0 is null); a ZdDbHandle names it within its drawing and
// is what drawing files store (written as hexadecimal digits).
#pragma once

#include <cstdint>
#include <functional>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class ZdDbObjectId {
 public:
  constexpr ZdDbObjectId() = default;
  constexpr explicit ZdDbObjectId(std::uint64_t value) : mValue(value) {}
  constexpr bool isNull() const noexcept { return mValue == 0; }
  constexpr std::uint64_t value() const noexcept { return mValue; }
  friend constexpr bool operator==(ZdDbObjectId a, ZdDbObjectId b) { return a.mValue == b.mValue; }
  friend constexpr bool operator<(ZdDbObjectId a, ZdDbObjectId b) { return a.mValue < b.mValue; }

  static const ZdDbObjectId kNull;

 private:
  std::uint64_t mValue = 0;
};

class ZdDbHandle {
 public:
  constexpr ZdDbHandle() = default;
  constexpr explicit ZdDbHandle(std::uint64_t value) : mValue(value) {}
  constexpr bool isNull() const noexcept { return mValue == 0; }
  constexpr std::uint64_t value() const noexcept { return mValue; }
  friend constexpr bool operator==(ZdDbHandle a, ZdDbHandle b) { return a.mValue == b.mValue; }
  friend constexpr bool operator<(ZdDbHandle a, ZdDbHandle b) { return a.mValue < b.mValue; }

 private:
  std::uint64_t mValue = 0;
};

inline constexpr ZdDbObjectId ZdDbObjectId::kNull{};

OHM_PLATFORM_API_END
