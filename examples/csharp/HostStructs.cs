using System;
using System.Runtime.InteropServices;

namespace Lumvik {
  /// <summary>How a call of the host library ended.</summary>
  public enum Status {
    Ok = 0,
    InvalidArgument = 1,
    InvalidHandle = 2,
    Forked = 3,
    NotFound = 4,
    NotAPhotograph = 5,
    Damaged = 6,
    Unsupported = 7,
    OutOfMemory = 8,
    Canceled = 9,
    Stale = 10,
    TimedOut = 11,
    BufferTooSmall = 12,
    Exists = 13,
    AccessDenied = 14,
    DiskFull = 15,
    IoError = 16,
    Internal = 17
  }

  // The structs of lumvik_host.h, which documents their fields. The caller sets struct_size.

  [StructLayout(LayoutKind.Sequential)]
  public struct SettingInfo {
    public uint struct_size;
    public int kind;
    public IntPtr key;
    public IntPtr label;
    public IntPtr group;
    public IntPtr unit;
    public IntPtr help;
    public float minimum;
    public float maximum;
    public float neutral_value;
    public float engine_value;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct OpenOptions {
    public uint struct_size;
    public int quality;
    public int proxy_first;
    public int keep_colors;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct PhotoInfo {
    public uint struct_size;
    public int format;
    public int width;
    public int height;
    public int quality;
    public int is_proxy;
    public int is_converted;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 128)] public byte[] profile;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct PreviewOptions {
    public uint struct_size;
    public int max_width;
    public int max_height;
    public int channels;
    public UIntPtr stride;
    public float background_blur;
    public int blue_first;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct Histogram {
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 256)] public uint[] red;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 256)] public uint[] green;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 256)] public uint[] blue;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 256)] public uint[] luminance;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct Frame {
    public uint struct_size;
    public int status;
    public ulong ticket;
    public int width;
    public int height;
    public int channels;
    public int blue_first;
    public UIntPtr stride;
    public IntPtr pixels;
    public IntPtr error;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct SaveOptions {
    public uint struct_size;
    public int format;
    public int quality;
    public int bits;
    public int max_width;
    public int max_height;
    public int metadata;
    public int overwrite;
    public int no_profile;
    public IntPtr copyright;
    public IntPtr mark;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct Exif {
    public uint struct_size;
    public int iso;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 64)] public byte[] make;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 64)] public byte[] model;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 128)] public byte[] lens;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 32)] public byte[] datetime;
    public float focal_length;
    public float f_number;
    public float exposure_time;
    public int orientation;
    public int width;
    public int height;
    public double gps_latitude;
    public double gps_longitude;
    public double as_shot_temperature;
    public double as_shot_tint;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct Integrity {
    public uint struct_size;
    public int format;
    public int is_whole;
    public int reserved;
    public ulong missing_bytes;
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 256)] public byte[] reason;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct ThumbnailOptions {
    public uint struct_size;
    public int max_width;
    public int max_height;
    public int metadata;
    public IntPtr mark;
  }
}
