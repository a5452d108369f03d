// Each function calls its build for the processor, chosen as in glibc, and at the first call, since
// constructors of other objects may come first.
#define DEFINE(type, name, parameters, arguments)                                           \
  type name parameters;                                                                     \
  type name##_sse2 parameters;                                                              \
  type name##_fma parameters;                                                               \
  static type name##_first parameters;                                                      \
  static type(*name##_chosen) parameters = name##_first;                                    \
  static type name##_first parameters {                                                     \
    __builtin_cpu_init();                                                                   \
    const int has_fma = __builtin_cpu_supports("fma") && __builtin_cpu_supports("avx2");    \
    __atomic_store_n(&name##_chosen, has_fma ? name##_fma : name##_sse2, __ATOMIC_RELAXED); \
    return name arguments;                                                                  \
  }                                                                                         \
  type name parameters {                                                                    \
    return __atomic_load_n(&name##_chosen, __ATOMIC_RELAXED) arguments;                     \
  }
#define DEFINE_UNARY(type, name) DEFINE(type, name, (type x), (x))
#define DEFINE_BINARY(type, name) DEFINE(type, name, (type x, type y), (x, y))

DEFINE_UNARY(double, exp)
DEFINE_UNARY(double, log)
DEFINE_BINARY(double, pow)
DEFINE_UNARY(float, expf)
DEFINE_UNARY(float, exp2f)
DEFINE_UNARY(float, logf)
DEFINE_UNARY(float, log2f)
DEFINE_BINARY(float, powf)
