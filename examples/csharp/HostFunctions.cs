using System;
using System.Runtime.InteropServices;

namespace Lumvik {
  /// <summary>An open photograph.</summary>
  public sealed class PhotoHandle : SafeHandle {
    public PhotoHandle() : base(IntPtr.Zero, true) {}

    public override bool IsInvalid {
      get { return handle == IntPtr.Zero; }
    }

    protected override bool ReleaseHandle() {
      return HostFunctions.lumvik_host_close(handle) == Status.Ok;
    }
  }

  /// <summary>Develop settings.</summary>
  public sealed class SettingsHandle : SafeHandle {
    /// <summary>Passes a null pointer.</summary>
    public static readonly SettingsHandle None = new SettingsHandle();

    public SettingsHandle() : base(IntPtr.Zero, true) {}

    public override bool IsInvalid {
      get { return handle == IntPtr.Zero; }
    }

    protected override bool ReleaseHandle() {
      return HostFunctions.lumvik_host_settings_close(handle) == Status.Ok;
    }
  }

  /// <summary>Receives a posted render. Keep the delegate alive until it was called; it must not throw.</summary>
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void FrameCallback(ref Frame frame, IntPtr user);

  /// <summary>The functions of lumvik_host.h, which documents them.</summary>
  public static class HostFunctions {
    const string Library = "lumvik_host";
    const CallingConvention Cdecl = CallingConvention.Cdecl;

    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_host_version();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_host_engine_version();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_host_status_name(int status);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_host_last_error();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_host_free(IntPtr memory);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern UIntPtr lumvik_host_setting_count();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_describe_setting(UIntPtr index, ref SettingInfo info);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_find_setting(byte[] key, out UIntPtr index);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_describe_settings_json(out IntPtr json);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_create(out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_copy(SettingsHandle settings, out SettingsHandle copy);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_close(IntPtr settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_clear(SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_set_engine_values(SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_has(SettingsHandle settings, byte[] key, out int has);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_remove(SettingsHandle settings, byte[] key);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_set_number(SettingsHandle settings, byte[] key, float value);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_get_number(SettingsHandle settings, byte[] key, out float value);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_set_flag(SettingsHandle settings, byte[] key, int value);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_get_flag(SettingsHandle settings, byte[] key, out int value);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_set_curve(SettingsHandle settings, byte[] key, float[] points,
        UIntPtr count);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_get_curve(SettingsHandle settings, byte[] key, float[] points,
        UIntPtr capacity, out UIntPtr count);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_merge(SettingsHandle settings, SettingsHandle other);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_remove_neutral(SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_equal(SettingsHandle settings, SettingsHandle other,
        out int equal);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_to_json(SettingsHandle settings, out IntPtr json);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_from_json(byte[] json, UIntPtr size, out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_read(byte[] path, out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_write(SettingsHandle settings, byte[] path, int overwrite);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_find_sidecar(byte[] photograph, byte[] extension, out IntPtr sidecar);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_import_xmp(byte[] path, out SettingsHandle settings,
        out IntPtr report);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_settings_to_xmp(SettingsHandle settings, out IntPtr xmp);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_list_presets(byte[] folder, out IntPtr names);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_read_preset(byte[] folder, byte[] name, out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_write_preset(byte[] folder, byte[] name, SettingsHandle settings,
        int overwrite);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_open(byte[] path, ref OpenOptions options, out PhotoHandle photo);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_open_bytes(byte[] data, UIntPtr size, ref OpenOptions options,
        out PhotoHandle photo);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_close(IntPtr photo);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_error(PhotoHandle photo, byte[] text, UIntPtr capacity);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_info(PhotoHandle photo, ref PhotoInfo info);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_set_quality(PhotoHandle photo, int quality);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_warnings(PhotoHandle photo, out IntPtr warnings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_wait_for_quality(PhotoHandle photo, int milliseconds);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_set_settings(PhotoHandle photo, SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_settings(PhotoHandle photo, out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_render(PhotoHandle photo);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_preview_size(PhotoHandle photo, ref PreviewOptions options,
        out int width, out int height);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_preview(PhotoHandle photo, ref PreviewOptions options, IntPtr pixels,
        UIntPtr capacity, out int width, out int height);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_histogram(PhotoHandle photo, ref Histogram histogram);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_post(PhotoHandle photo, SettingsHandle settings, ref PreviewOptions options,
        FrameCallback callback, IntPtr user, out ulong ticket);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_wait(PhotoHandle photo, ulong ticket, int milliseconds);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_cancel(PhotoHandle photo);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_suggest(PhotoHandle photo, uint what, out SettingsHandle settings);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_find_subject(PhotoHandle photo, float x, float y);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_mask(PhotoHandle photo, IntPtr mask, UIntPtr capacity, out int width,
        out int height);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_host_format_of(byte[] path);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_host_extension_of(int format);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_save(PhotoHandle photo, byte[] path, ref SaveOptions options);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_save_bytes(PhotoHandle photo, ref SaveOptions options, out IntPtr data,
        out UIntPtr size);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_save_cutout(PhotoHandle photo, byte[] path, ref SaveOptions options);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_write_file(byte[] path, byte[] data, UIntPtr size, int overwrite);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_write_png(byte[] path, byte[] pixels, int width, int height, int channels,
        ref SaveOptions options);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_read_mark(byte[] path, out IntPtr mark);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_get_exif(PhotoHandle photo, ref Exif exif);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_read_exif(byte[] path, ref Exif exif);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_check(PhotoHandle photo, ref Integrity integrity);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_check_file(byte[] path, ref Integrity integrity);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_identify(byte[] path, out int format);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_read_size(byte[] path, out int width, out int height);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_fingerprint(byte[] path, out ulong fingerprint);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_extract_thumbnail(byte[] path, ref ThumbnailOptions options,
        out IntPtr data, out UIntPtr size, out int width, out int height);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_hash(byte[] path, out ulong hash);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern Status lumvik_host_has_metadata_module();
  }
}
