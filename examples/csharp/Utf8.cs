using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Lumvik {
  /// <summary>
  /// Texts of the C interfaces, which are NUL-terminated UTF-8. By default .NET passes a "string" in the ANSI code page on
  /// Windows, and .NET Framework has no Marshal.PtrToStringUTF8.
  /// </summary>
  public static class Utf8 {
    /// <summary>The bytes of a text with a terminating NUL; null for null.</summary>
    public static byte[] Bytes(string text) {
      if (text == null) return null;
      if (text.IndexOf('\0') >= 0) throw new ArgumentException("a text for lumvik contains a NUL");
      return Encoding.UTF8.GetBytes(text + "\0");
    }

    /// <summary>The text at an address; null for a null pointer.</summary>
    public static string Text(IntPtr address) {
      if (address == IntPtr.Zero) return null;
      int length = 0;
      while (Marshal.ReadByte(address, length) != 0) ++length;
      var bytes = new byte[length];
      Marshal.Copy(address, bytes, 0, length);
      return Encoding.UTF8.GetString(bytes);
    }

    /// <summary>The text in a field of fixed size.</summary>
    public static string Text(byte[] field) {
      int length = Array.IndexOf(field, (byte)0);
      return Encoding.UTF8.GetString(field, 0, length < 0 ? field.Length : length);
    }
  }

  /// <summary>A text in native memory, for a field of a struct that is a pointer.</summary>
  public sealed class NativeText : IDisposable {
    public IntPtr Address { get; private set; }

    public NativeText(string text) {
      byte[] bytes = Utf8.Bytes(text);
      if (bytes == null) return;
      Address = Marshal.AllocHGlobal(bytes.Length);
      Marshal.Copy(bytes, 0, Address, bytes.Length);
    }

    public void Dispose() {
      Marshal.FreeHGlobal(Address);
      Address = IntPtr.Zero;
    }
  }
}
