#include "tools/start_up.h"

#include <windows.h>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <new>
#include <shellapi.h>

#include "tools/windows/wide_text.h"

namespace captionfx {

std::vector<std::string> StartUp(int /*argc*/, char** /*argv*/) {
    // Frames go to standard output, and a byte 10 among them is no line end.
    for (std::FILE* const stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    HANDLE const console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    // The progress erases what is left of its line.
    if (GetConsoleMode(console, &mode) != 0) SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);

    int count = 0;
    const std::unique_ptr<LPWSTR[], decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count),
                                                               &LocalFree);
    if (!wide) throw std::bad_alloc();
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(Utf8FromWide(wide[static_cast<size_t>(i)]));
    return arguments;
}

}  // namespace captionfx
