// The Windows side of the installed-map system calls. Compiled on Windows
// only; elsewhere this file is empty.
#ifdef _WIN32

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/windows_platform.h"

namespace korvex::platform {

namespace {

HKEY hive_handle(Hive hive) { return hive == Hive::local_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

// Opens key for reading in the 32-bit view, where the 32-bit map programs
// write; the native view when the key is not there.
HKEY open_key(Hive hive, const std::string& key) {
    HKEY h = nullptr;
    if (RegOpenKeyExA(hive_handle(hive), key.c_str(), 0, KEY_READ | KEY_WOW64_32KEY, &h) == ERROR_SUCCESS) return h;
    if (RegOpenKeyExA(hive_handle(hive), key.c_str(), 0, KEY_READ, &h) == ERROR_SUCCESS) return h;
    return nullptr;
}

// String data of a value; numbers as decimal text, binary data as bytes.
std::string value_text(DWORD type, const std::string& data) {
    if (type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ) {
        const size_t end = data.find('\0');
        return end == std::string::npos ? data : data.substr(0, end);
    }
    if (type == REG_DWORD && data.size() >= 4) {
        DWORD v = 0;
        memcpy(&v, data.data(), 4);
        return std::to_string(v);
    }
    return data;
}

}  // namespace

std::vector<std::string> WindowsMapPlatform::reg_subkeys(Hive hive, const std::string& key) const {
    std::vector<std::string> out;
    HKEY h = open_key(hive, key);
    if (!h) return out;
    char name[256];
    for (DWORD i = 0;; ++i) {
        DWORD len = sizeof name;
        if (RegEnumKeyExA(h, i, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        out.emplace_back(name, len);
    }
    RegCloseKey(h);
    return out;
}

RegValues WindowsMapPlatform::reg_values(Hive hive, const std::string& key) const {
    RegValues out;
    HKEY h = open_key(hive, key);
    if (!h) return out;
    char name[16384];
    std::string data(65536, '\0');
    for (DWORD i = 0;; ++i) {
        DWORD name_len = sizeof name;
        DWORD data_len = static_cast<DWORD>(data.size());
        DWORD type = 0;
        const LONG r = RegEnumValueA(h, i, name, &name_len, nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &data_len);
        if (r == ERROR_NO_MORE_ITEMS) break;
        if (r != ERROR_SUCCESS) continue;
        out.emplace_back(std::string(name, name_len), value_text(type, data.substr(0, data_len)));
    }
    RegCloseKey(h);
    return out;
}

std::optional<std::string> WindowsMapPlatform::reg_value(Hive hive, const std::string& key,
                                                         const std::string& name) const {
    HKEY h = open_key(hive, key);
    if (!h) return std::nullopt;
    DWORD type = 0;
    DWORD len = 0;
    std::optional<std::string> out;
    if (RegQueryValueExA(h, name.c_str(), nullptr, &type, nullptr, &len) == ERROR_SUCCESS) {
        std::string data(len, '\0');
        if (RegQueryValueExA(h, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &len) ==
            ERROR_SUCCESS)
            out = value_text(type, data.substr(0, len));
    }
    RegCloseKey(h);
    return out;
}

bool WindowsMapPlatform::import_reg(const std::string& reg_file) {
    const HINSTANCE r = ShellExecuteA(nullptr, "open", "regedit.exe", ("\"" + reg_file + "\"").c_str(), nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(r) > 32;
}

bool WindowsMapPlatform::bit64() const {
#ifdef _WIN64
    return true;
#else
    BOOL wow = FALSE;
    using Fn = BOOL(WINAPI*)(HANDLE, PBOOL);
    const auto fn = reinterpret_cast<Fn>(GetProcAddress(GetModuleHandleA("kernel32"), "IsWow64Process"));
    return fn && fn(GetCurrentProcess(), &wow) && wow;
#endif
}

std::string WindowsMapPlatform::shortcut_target(const std::string& lnk) const {
    std::string out;
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return out;
    IShellLinkA* link = nullptr;
    if (SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                   reinterpret_cast<void**>(&link)))) {
        IPersistFile* file = nullptr;
        if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
            std::wstring wide(lnk.begin(), lnk.end());
            if (SUCCEEDED(file->Load(wide.c_str(), STGM_READ))) {
                char target[MAX_PATH] = {};
                if (SUCCEEDED(link->GetPath(target, MAX_PATH, nullptr, 0))) out = target;
            }
            file->Release();
        }
        link->Release();
    }
    CoUninitialize();
    return out;
}

namespace {

BOOL CALLBACK collect_title(HWND hwnd, LPARAM into) {
    char title[512];
    const int n = GetWindowTextA(hwnd, title, sizeof title);
    if (n > 0) reinterpret_cast<std::vector<std::string>*>(into)->emplace_back(title, n);
    return TRUE;
}

}  // namespace

std::vector<std::string> WindowsMapPlatform::window_titles() const {
    std::vector<std::string> titles;
    EnumWindows(collect_title, reinterpret_cast<LPARAM>(&titles));
    return titles;
}

bool WindowsMapPlatform::file_locked(const std::string& local) const {
    const HANDLE h = CreateFileA(local.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h != INVALID_HANDLE_VALUE) {
        CloseHandle(h);
        return false;
    }
    const DWORD e = GetLastError();
    return e == ERROR_SHARING_VIOLATION || e == ERROR_LOCK_VIOLATION;
}

std::string WindowsMapPlatform::env(const std::string& name) const {
    const char* v = std::getenv(name.c_str());
    return v ? std::string(v) : std::string();
}

}  // namespace korvex::platform

#endif
