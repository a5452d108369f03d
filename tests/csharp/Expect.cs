using System;

static class Expect {
  public static void True(bool condition, string what) {
    if (!condition) throw new Exception(what);
  }

  public static void Equal<T>(T actual, T expected, string what) {
    True(Equals(actual, expected), what + ": " + actual + " instead of " + expected);
  }

  public static void Near(double actual, double expected, double tolerance, string what) {
    True(Math.Abs(actual - expected) <= tolerance, what + ": " + actual + " instead of " + expected);
  }

  public static Failure Throws<Failure>(Action action, string what) where Failure : Exception {
    try {
      action();
    } catch (Failure failure) {
      return failure;
    }
    throw new Exception(what + ": no " + typeof(Failure).Name);
  }
}
