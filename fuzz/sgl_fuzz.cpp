// A byte string as a program of calls to the software pipeline.
#include "support/sgl_program.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    captionfx::fuzz::InputReader in(data, size);
    sgl::test::SglProgram(in).Run();
    return 0;
}
