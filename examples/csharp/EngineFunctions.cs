using System;
using System.Runtime.InteropServices;

namespace Lumvik {
  /// <summary>A context of the engine. One with no context behind it passes a null pointer.</summary>
  public sealed class EngineContext : SafeHandle {
    public EngineContext() : base(IntPtr.Zero, true) {}

    public override bool IsInvalid {
      get { return handle == IntPtr.Zero; }
    }

    protected override bool ReleaseHandle() {
      EngineFunctions.lumvik_destroy_context(handle);
      return true;
    }
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct ExifInfo {
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 64)] public byte[] make;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 64)] public byte[] model;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 128)] public byte[] lens;
    public float focal_length;
    public float f_number;
    public float exposure_time;
    public int iso;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 32)] public byte[] datetime;
    public int width;
    public int height;
    public int orientation;
    public int reserved;
    public double gps_latitude;
    public double gps_longitude;
  }

  /// <summary>
  /// The functions of lumvik.h, which documents them. An exception of the engine ends a .NET process, and lumvik.h lists
  /// what throws one: an application should use the host library, whose failures are statuses, instead (Photo.cs).
  /// </summary>
  public static class EngineFunctions {
    const string Library = "lumvik";
    const CallingConvention Cdecl = CallingConvention.Cdecl;

    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_init();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_shutdown();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_version();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern EngineContext lumvik_create_context();
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_destroy_context(IntPtr ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern IntPtr lumvik_last_error(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_width(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_height(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_load_arw(EngineContext ctx, byte[] path, int quality);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_unload(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_process(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_preview(EngineContext ctx, byte[] pixels, int capacity);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_histogram(EngineContext ctx, uint[] red, uint[] green, uint[] blue,
        uint[] luminance);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_exif(EngineContext ctx, out ExifInfo info);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_export_jpeg(EngineContext ctx, byte[] path, int quality, int reserved,
        int keep_exif);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_export_png(EngineContext ctx, byte[] path, int bit_depth);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_export_tiff(EngineContext ctx, byte[] path);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_reset_adjustments(EngineContext ctx);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_exposure(EngineContext ctx, float stops);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_brightness(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_contrast(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_highlights(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_shadows(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_whites(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_blacks(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_temperature(EngineContext ctx, float kelvin);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_tint(EngineContext ctx, float tint);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_saturation(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_vibrance(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_tone_curve(EngineContext ctx, int channel, float[] points, int count);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_reset_tone_curve(EngineContext ctx, int channel);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_clarity(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_texture(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_dehaze(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_hsl(EngineContext ctx, int band, float hue, float saturation, float luminance);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_split_toning(EngineContext ctx, int zone, float hue, float saturation,
        float balance);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_nr_luminance(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_nr_color(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_sharpening_amount(EngineContext ctx, float amount);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_sharpening_radius(EngineContext ctx, float pixels);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_sharpening_threshold(EngineContext ctx, float level);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_distortion(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_ca_correction(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_lens_vignette(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_defringe(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_flip_h(EngineContext ctx, int flip);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_flip_v(EngineContext ctx, int flip);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_rotation(EngineContext ctx, float degrees);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_perspective_h(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_perspective_v(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_crop(EngineContext ctx, float x, float y, float w, float h);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_vignette_amount(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_vignette_midpoint(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_vignette_roundness(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_grain_amount(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_grain_size(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_auto_exposure(EngineContext ctx, out float exposure);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_auto_white_balance(EngineContext ctx, out float temperature, out float tint);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_auto_enhance(EngineContext ctx, float[] slots);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_auto_crop(EngineContext ctx, out float x, out float y, out float w, out float h);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_auto_straighten(EngineContext ctx, out float angle);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_segment_subject(EngineContext ctx, float subject_x, float subject_y);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_get_mask(EngineContext ctx, byte[] mask, int capacity);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_set_bg_blur(EngineContext ctx, float percent);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_export_subject_png(EngineContext ctx, byte[] path);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_extract_thumbnail(byte[] path, out IntPtr data, out int size);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern void lumvik_free_thumb(IntPtr data);
    [DllImport(Library, CallingConvention = Cdecl)]
    public static extern int lumvik_phash(byte[] path, out ulong hash);
  }
}
