#include "tests/tools/process.h"

#include <windows.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "tools/text_encoding.h"

namespace captionfx {
namespace {

[[noreturn]] void Fail() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), CAPTIONFX_TOOL);
}

class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {
        if (handle == nullptr || handle == INVALID_HANDLE_VALUE) Fail();
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { CloseHandle(handle_); }
    [[nodiscard]] HANDLE Get() const { return handle_; }

private:
    HANDLE handle_;
};

HANDLE CreateInherited(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    // The process before may still have it open: handles go a moment after it has ended.
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return CreateFileW(file.c_str(), GENERIC_WRITE, kShared, &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// An argument as the program's start-up code takes the command line apart again: backslashes count double before a
/// quotation mark, and nowhere else.
std::wstring Quoted(const std::string& argument) {
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    const std::optional<std::u16string> units = Utf16FromUtf8(argument);
    if (!units) throw std::invalid_argument("no UTF-8: " + argument);
    for (const char16_t unit : *units) {
        if (unit == u'"') quoted.append(backslashes + 1, L'\\');
        backslashes = unit == u'\\' ? backslashes + 1 : 0;
        quoted += static_cast<wchar_t>(unit);
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int ProcessResult::ErrorLines() const {
    return static_cast<int>(std::count(errors.begin(), errors.end(), '\n'));
}

ProcessResult RunTool(const ScratchFolder& scratch, const std::vector<std::string>& arguments) {
    std::wstring line = Quoted(CAPTIONFX_TOOL);
    for (const std::string& argument : arguments) line += L" " + Quoted(argument);

    DWORD exitCode = 0;
    {
        const Handle output(CreateInherited(scratch / "stdout.txt")), errors(CreateInherited(scratch / "stderr.txt"));
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = output.Get();
        startup.hStdError = errors.Get();
        PROCESS_INFORMATION started{};
        if (CreateProcessW(std::filesystem::path(CAPTIONFX_TOOL).c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                           nullptr, nullptr, &startup, &started) == 0)
            Fail();
        const Handle process(started.hProcess), thread(started.hThread);
        WaitForSingleObject(process.Get(), INFINITE);
        GetExitCodeProcess(process.Get(), &exitCode);
    }
    return {static_cast<int>(exitCode), ReadAll(scratch / "stdout.txt"), ReadAll(scratch / "stderr.txt")};
}

}  // namespace captionfx
