// COM for a whole program: the library wants it initialised by whoever calls it. Linked into a program, it is there
// before main, for the threads that have no apartment of their own too.
#include <windows.h>
#include <objbase.h>

namespace {

class ComApartment {
public:
    ComApartment() : isOpen_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (isOpen_) CoUninitialize();
    }

private:
    bool isOpen_;
};

const ComApartment apartment;

}  // namespace
