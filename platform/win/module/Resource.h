// Resources of a loaded module: its string table, raw data and version block
// (the layout is in ResourceTable.h). Names and types are integer ids
// (MAKEINTRESOURCEW); named resources are not supported and are not found.
//
// An HRSRC points at the module's table entry and an HGLOBAL at the data;
// both stay valid while the module stays loaded, and neither is freed.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"
#include "win/module/ResourceTable.h"

OHM_PLATFORM_API_BEGIN

// Copies string `id` of `module` (the program for null) into `buffer` of
// `size` units, cut to size - 1 units, with a terminator; the units copied.
// With a size of 0, *buffer is pointed at the string itself (read only, not
// terminated) and its length is returned. 0 when the string isn't there
// (ERROR_RESOURCE_NAME_NOT_FOUND, buffer untouched), the module has no
// resources or isn't loaded (ERROR_RESOURCE_DATA_NOT_FOUND), or for a null
// buffer (ERROR_INVALID_PARAMETER).
int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size);

// The resource `name` of `type` in `module` (the program for null). Null
// with ERROR_RESOURCE_TYPE_NOT_FOUND when the module has no resource of that
// type, ERROR_RESOURCE_NAME_NOT_FOUND when none of that id,
// ERROR_RESOURCE_DATA_NOT_FOUND when it has no resources at all.
HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type);

// Bytes of a found resource; 0 with ERROR_INVALID_HANDLE for null.
DWORD SizeofResource(HMODULE module, HRSRC resource);

// The handle of a found resource's data; null with ERROR_INVALID_HANDLE for null.
HGLOBAL LoadResource(HMODULE module, HRSRC resource);

// The first byte of the loaded resource; null for null.
LPVOID LockResource(HGLOBAL data);

OHM_PLATFORM_API_END
