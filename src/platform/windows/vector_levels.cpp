// What Highway's own library holds, which is not there for MinGW: the vector instructions of this processor, and those
// that were chosen.
#include <atomic>
#include <cstdint>

#include <hwy/targets.h>

namespace hwy {
namespace {

std::atomic<int64_t> forTest{0};

/// GCC's look at the processor also asks whether the system keeps the wide registers.
bool HasAvx512() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
           __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512cd");
}

bool HasLateAvx512() {
    return __builtin_cpu_supports("avx512vnni") && __builtin_cpu_supports("vpclmulqdq") &&
           __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
           __builtin_cpu_supports("vaes") && __builtin_cpu_supports("avx512vpopcntdq") &&
           __builtin_cpu_supports("avx512bitalg");
}

/// Each level asks for those below it.
int64_t TargetsOfProcessor() {
    int64_t targets = HWY_STATIC_TARGET;
    if (!__builtin_cpu_supports("ssse3")) return targets;
    targets |= HWY_SSSE3;
    if (!__builtin_cpu_supports("sse4.1") || !__builtin_cpu_supports("sse4.2") || !__builtin_cpu_supports("pclmul") ||
        !__builtin_cpu_supports("aes"))
        return targets;
    targets |= HWY_SSE4;
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("lzcnt") || !__builtin_cpu_supports("bmi") ||
        !__builtin_cpu_supports("bmi2") || !__builtin_cpu_supports("fma") || !__builtin_cpu_supports("f16c"))
        return targets;
    targets |= HWY_AVX2;
    if (!HasAvx512()) return targets;
    targets |= HWY_AVX3;
    return HasLateAvx512() ? targets | HWY_AVX3_DL : targets;
}

}  // namespace

int64_t SupportedTargets() {
    static const int64_t ofProcessor = TargetsOfProcessor();
    const int64_t mocked = forTest.load();
    return mocked != 0 ? mocked : ofProcessor;
}

void SetSupportedTargetsForTest(int64_t targets) {
    forTest = targets;
}

ChosenTarget& GetChosenTarget() {
    static ChosenTarget chosen;
    return chosen;
}

}  // namespace hwy
