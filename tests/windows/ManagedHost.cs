// A host in C#: develops one photograph in two threads and expects the same preview from both.
//
//   ManagedHost.exe PHOTOGRAPH
//
// The same program runs with .NET or Mono on Windows, where it finds lumvik.dll, and on Linux, where it finds
// liblumvik.so.
using System;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text;
using System.Threading;

static class ManagedHost {
  // int and float have the same size in C and C#; a path is NUL-terminated UTF-8.
  [DllImport("lumvik")]
  static extern IntPtr lumvik_version();
  [DllImport("lumvik")]
  static extern IntPtr lumvik_create_context();
  [DllImport("lumvik")]
  static extern void lumvik_destroy_context(IntPtr context);
  [DllImport("lumvik")]
  static extern IntPtr lumvik_last_error(IntPtr context);
  [DllImport("lumvik")]
  static extern int lumvik_load_arw(IntPtr context, byte[] path, int quality);
  [DllImport("lumvik")]
  static extern int lumvik_get_width(IntPtr context);
  [DllImport("lumvik")]
  static extern int lumvik_get_height(IntPtr context);
  [DllImport("lumvik")]
  static extern void lumvik_set_exposure(IntPtr context, float stops);
  [DllImport("lumvik")]
  static extern int lumvik_get_preview(IntPtr context, byte[] pixels, int capacity);

  static void Check(int status, IntPtr context) {
    if (status != 0)
      throw new Exception(Marshal.PtrToStringAnsi(lumvik_last_error(context)));
  }

  static byte[] Develop(string photograph, float stops) {
    IntPtr context = lumvik_create_context();
    Check(lumvik_load_arw(context, Encoding.UTF8.GetBytes(photograph + "\0"), 4), context);
    lumvik_set_exposure(context, stops);
    var pixels = new byte[lumvik_get_width(context) * lumvik_get_height(context) * 4];
    Check(lumvik_get_preview(context, pixels, pixels.Length), context);
    lumvik_destroy_context(context);
    return pixels;
  }

  static int Main(string[] arguments) {
    if (Marshal.PtrToStringAnsi(lumvik_version()) != "1.0.0")
      throw new Exception("wrong version");
    byte[] other = null;
    var thread = new Thread(() => other = Develop(arguments[0], 0.5f));
    thread.Start();
    byte[] one = Develop(arguments[0], 0.5f);
    thread.Join();
    byte[] darker = Develop(arguments[0], 0.0f);
    double gain = one.Average(x => x) / darker.Average(x => x);
    Console.WriteLine("{0} bytes, {1:F2} times as bright at +0.5 stops", one.Length, gain);
    return one.SequenceEqual(other) && gain > 1.0 ? 0 : 1;
  }
}
