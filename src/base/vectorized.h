// Running plain loops with the widest vector instructions of the processor.
#ifndef LUMVIK_BASE_VECTORIZED_H_
#define LUMVIK_BASE_VECTORIZED_H_

#include <atomic>
#include <cstring>
#include <type_traits>

namespace lumvik {

// In ascending order. On processors other than x86 there is only the baseline.
enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

// The widest set to use; tests lower it to compare the sets.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): only tests change it
inline std::atomic<InstructionSet> widest_instruction_set{InstructionSet::kAvx512};

#if defined(__x86_64__)

inline InstructionSet BestInstructionSet() {
  const InstructionSet widest = widest_instruction_set.load(std::memory_order_relaxed);
  const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
  if (avx512 && widest >= InstructionSet::kAvx512) return InstructionSet::kAvx512;
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (avx2 && widest >= InstructionSet::kAvx2) return InstructionSet::kAvx2;
  return InstructionSet::kBaseline;
}

// `flatten` inlines the loop, and the inline functions it calls, into a function of that instruction set.
template <typename Loop>
[[gnu::flatten, gnu::target("avx2,fma")]] void RunWithAvx2(const Loop& loop) {
  loop();
}

// GCC prefers narrower vectors by default; clang has no such option here.
template <typename Loop>
#if defined(__clang__)
[[gnu::flatten, gnu::target("avx2,fma,avx512f,avx512bw,avx512dq,avx512vl")]]
#else
[[gnu::flatten, gnu::target("avx2,fma,avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=512")]]
#endif
void RunWithAvx512(const Loop& loop) {
  loop();
}

// Calls `loop()` compiled for the best instruction set. Worthwhile when the compiler can vectorize the loop
// and it runs over hundreds of values. Every set gives the same bytes, because contraction to fused
// multiply-add is off: only std::fma makes one.
template <typename Loop>
void Vectorized(const Loop& loop) {
  switch (BestInstructionSet()) {
    case InstructionSet::kAvx512:
      return RunWithAvx512(loop);
    case InstructionSet::kAvx2:
      return RunWithAvx2(loop);
    case InstructionSet::kBaseline:
      return loop();
  }
}

#else

inline InstructionSet BestInstructionSet() {
  return InstructionSet::kBaseline;
}

template <typename Loop>
void Vectorized(const Loop& loop) {
  loop();
}

#endif

// Floats in the widest vector of any set.
inline constexpr int kMaxLanes = 16;

// A vector of N floats, for loops that the compiler does not vectorize well. Arithmetic is element-wise.
// Functions that take or return one are always inlined: clang would compile them for the baseline, which
// passes wide vectors in another way than the instruction set of their caller.
template <int lanes>
struct LanesOf {
  using Type __attribute__((vector_size(lanes * sizeof(float)))) = float;
};
template <int lanes>
using Lanes = typename LanesOf<lanes>::Type;

template <int lanes>
[[gnu::always_inline]] inline Lanes<lanes> LoadLanes(const float* from) {
  Lanes<lanes> loaded;
  std::memcpy(&loaded, from, sizeof(loaded));
  return loaded;
}

template <typename Vector>
[[gnu::always_inline]] inline void StoreLanes(const Vector& vector, float* to) {
  std::memcpy(to, &vector, sizeof(vector));
}

// Calls `loop(lanes)` compiled for the best instruction set; `lanes` is an integral constant, the number of
// floats in one of its vectors. GCC splits wider vectors into scalars.
template <typename Loop>
void VectorizedByLanes(const Loop& loop) {
#if defined(__x86_64__)
  switch (BestInstructionSet()) {
    case InstructionSet::kAvx512:
      return RunWithAvx512([&loop] { loop(std::integral_constant<int, kMaxLanes>()); });
    case InstructionSet::kAvx2:
      return RunWithAvx2([&loop] { loop(std::integral_constant<int, 8>()); });
    case InstructionSet::kBaseline:
      break;
  }
#endif
  loop(std::integral_constant<int, 4>());
}

}  // namespace lumvik

#endif  // LUMVIK_BASE_VECTORIZED_H_
