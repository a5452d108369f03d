using System;
using static Lumvik.HostFunctions;

namespace Lumvik {
  /// <summary>A failed call of the host library: its status, and a sentence for a person.</summary>
  public sealed class LumvikException : Exception {
    public Status Status { get; private set; }

    public LumvikException(Status status, string text) : base(text) {
      Status = status;
    }

    /// <summary>Throws the latest failure of this thread unless the status is Ok.</summary>
    public static void Check(Status status) {
      if (status != Status.Ok) throw new LumvikException(status, Utf8.Text(lumvik_host_last_error()));
    }
  }

  /// <summary>Develop settings. A setting without a value is neutral.</summary>
  public sealed class Settings : IDisposable {
    public SettingsHandle Handle { get; private set; }

    public Settings() {
      SettingsHandle handle;
      LumvikException.Check(lumvik_host_settings_create(out handle));
      Handle = handle;
    }

    /// <summary>Takes over a handle.</summary>
    public Settings(SettingsHandle handle) {
      Handle = handle;
    }

    /// <summary>From the text of a settings file.</summary>
    public static Settings FromJson(string json) {
      byte[] bytes = System.Text.Encoding.UTF8.GetBytes(json);
      SettingsHandle handle;
      LumvikException.Check(lumvik_host_settings_from_json(bytes, (UIntPtr)bytes.Length, out handle));
      return new Settings(handle);
    }

    /// <summary>The text of a settings file with these values.</summary>
    public string ToJson() {
      IntPtr json;
      LumvikException.Check(lumvik_host_settings_to_json(Handle, out json));
      return TakeText(json);
    }

    public void SetNumber(string key, float value) {
      LumvikException.Check(lumvik_host_settings_set_number(Handle, Utf8.Bytes(key), value));
    }

    public float GetNumber(string key) {
      float value;
      LumvikException.Check(lumvik_host_settings_get_number(Handle, Utf8.Bytes(key), out value));
      return value;
    }

    public void SetFlag(string key, bool value) {
      LumvikException.Check(lumvik_host_settings_set_flag(Handle, Utf8.Bytes(key), value ? 1 : 0));
    }

    public bool GetFlag(string key) {
      int value;
      LumvikException.Check(lumvik_host_settings_get_flag(Handle, Utf8.Bytes(key), out value));
      return value != 0;
    }

    /// <summary>Sets a tone curve: x and y of each point in turn.</summary>
    public void SetCurve(string key, params float[] points) {
      LumvikException.Check(
        lumvik_host_settings_set_curve(Handle, Utf8.Bytes(key), points, (UIntPtr)(points.Length / 2)));
    }

    public void Dispose() {
      Handle.Dispose();
    }

    /// <summary>A text that the library returned, which is released.</summary>
    public static string TakeText(IntPtr text) {
      try {
        return Utf8.Text(text);
      } finally {
        lumvik_host_free(text);
      }
    }
  }
}
