// System message texts for error codes, and the local heap that holds the
// texts FormatMessageW allocates. Only system messages are supported: a
// message from a module or a caller's string isn't found.
//
// Ownership: a buffer allocated by FormatMessageW or LocalAlloc is the
// caller's until LocalFree; the test seam counts those not yet freed.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include <cstdarg>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_STRING = 0x0400;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x0800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
// Languages: neutral with default sub-language (1024), and US English.
inline constexpr DWORD LANG_NEUTRAL_SUBLANG_DEFAULT = 0x0400;
inline constexpr DWORD LANG_ENGLISH_US = 0x0409;
inline constexpr UINT LMEM_FIXED = 0;

// The system text of error `messageId`, ending in "\r\n". With
// FORMAT_MESSAGE_ALLOCATE_BUFFER, `buffer` is really an LPWSTR* that gets a
// new buffer (LocalFree it); otherwise the text is copied into `buffer` of
// `size` units. The units written without terminator; 0 with
// ERROR_MR_MID_NOT_FOUND for a code without text or a source other than the
// system, ERROR_RESOURCE_LANG_NOT_FOUND for a language other than 0, 1024 or
// 1033, ERROR_INSUFFICIENT_BUFFER when the text doesn't fit (nothing
// written), ERROR_INVALID_PARAMETER for a null buffer.
DWORD FormatMessageW(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPWSTR buffer, DWORD size,
                     va_list* arguments);

// A new block of `bytes` bytes (zeroed); null when allocation fails.
HLOCAL LocalAlloc(UINT flags, std::size_t bytes);
// Frees a block of LocalAlloc or FormatMessageW; null on success (also for
// null), the block itself with ERROR_INVALID_HANDLE for a stranger.
HLOCAL LocalFree(HLOCAL block);

OHM_PLATFORM_API_END
