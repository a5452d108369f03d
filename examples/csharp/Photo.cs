using System;
using System.Runtime.InteropServices;
using static Lumvik.HostFunctions;

namespace Lumvik {
  /// <summary>Pixels as a Windows bitmap has them: 4 bytes (B, G, R, A) each, rows from top to bottom.</summary>
  public sealed class BgraImage {
    public int Width;
    public int Height;
    public byte[] Pixels; // width x height x 4 bytes
  }

  /// <summary>An open photograph. All members may be used from any thread.</summary>
  public sealed class Photo : IDisposable {
    const int BytesPerPixel = 4;
    static readonly FrameCallback callBack = CallBack; // stays alive as long as the library may call it

    public PhotoHandle Handle { get; private set; }

    /// <summary>Opens a photograph with neutral settings. Quality is that of a RAW file: 1 (full size) to 4.</summary>
    public Photo(string path, int quality = 1) {
      var options = new OpenOptions { struct_size = SizeOf<OpenOptions>(), quality = quality };
      PhotoHandle handle;
      LumvikException.Check(lumvik_host_open(Utf8.Bytes(path), ref options, out handle));
      Handle = handle;
    }

    public PhotoInfo Info {
      get {
        var info = new PhotoInfo { struct_size = SizeOf<PhotoInfo>() };
        LumvikException.Check(lumvik_host_get_info(Handle, ref info));
        return info;
      }
    }

    public Exif Exif {
      get {
        var exif = new Exif { struct_size = SizeOf<Exif>() };
        LumvikException.Check(lumvik_host_get_exif(Handle, ref exif));
        return exif;
      }
    }

    /// <summary>What could not be used while opening and saving: one sentence per line.</summary>
    public string Warnings {
      get {
        IntPtr warnings;
        LumvikException.Check(lumvik_host_get_warnings(Handle, out warnings));
        return Settings.TakeText(warnings);
      }
    }

    /// <summary>Sets the settings; null makes them neutral.</summary>
    public void SetSettings(Settings settings) {
      LumvikException.Check(lumvik_host_set_settings(Handle, HandleOf(settings)));
    }

    public Settings GetSettings() {
      SettingsHandle handle;
      LumvikException.Check(lumvik_host_get_settings(Handle, out handle));
      return new Settings(handle);
    }

    /// <summary>Renders, reduced to fit; 0: no limit.</summary>
    public BgraImage Preview(int maxWidth = 0, int maxHeight = 0) {
      PreviewOptions options = BgraOptions(maxWidth, maxHeight);
      var image = new BgraImage();
      LumvikException.Check(lumvik_host_get_preview_size(Handle, ref options, out image.Width, out image.Height));
      for (;;) {
        image.Pixels = new byte[image.Width * image.Height * BytesPerPixel];
        Status status;
        GCHandle pinned = GCHandle.Alloc(image.Pixels, GCHandleType.Pinned);
        try {
          status = lumvik_host_get_preview(Handle, ref options, pinned.AddrOfPinnedObject(),
            (UIntPtr)image.Pixels.Length, out image.Width, out image.Height);
        } finally {
          pinned.Free();
        }
        int size = image.Width * image.Height * BytesPerPixel;
        if (status == Status.Ok && image.Pixels.Length == size) return image;
        if (status != Status.BufferTooSmall) LumvikException.Check(status);
        // Another thread changed the crop since the size was read.
      }
    }

    /// <summary>
    /// Renders straight to a bitmap, such as the back buffer of a WriteableBitmap or what Bitmap.LockBits returns:
    /// "stride" bytes from row to row, "capacity" in all.
    /// </summary>
    public void CopyPreview(IntPtr bitmap, int stride, long capacity, int maxWidth = 0, int maxHeight = 0) {
      PreviewOptions options = BgraOptions(maxWidth, maxHeight);
      options.stride = (UIntPtr)stride;
      int width, height;
      LumvikException.Check(
        lumvik_host_get_preview(Handle, ref options, bitmap, (UIntPtr)capacity, out width, out height));
    }

    /// <summary>
    /// Renders in the background with these settings (null: the present ones) and returns a ticket. A worker thread calls
    /// "done" with the preview, or with null and the reason, such as Status.Stale if a newer render replaced this one.
    /// </summary>
    public ulong Post(
      Settings settings, Action<BgraImage, LumvikException> done, int maxWidth = 0, int maxHeight = 0) {
      PreviewOptions options = BgraOptions(maxWidth, maxHeight);
      GCHandle user = GCHandle.Alloc(done);
      ulong ticket;
      Status status = lumvik_host_post(Handle, HandleOf(settings), ref options, callBack, GCHandle.ToIntPtr(user),
        out ticket);
      if (status != Status.Ok) user.Free();
      LumvikException.Check(status);
      return ticket;
    }

    /// <summary>Waits for a posted render; ticket 0 is the latest. Returns how it ended.</summary>
    public Status Wait(ulong ticket = 0, int milliseconds = -1) {
      Status status = lumvik_host_wait(Handle, ticket, milliseconds);
      bool expected = status == Status.Stale || status == Status.Canceled || status == Status.TimedOut;
      if (!expected) LumvikException.Check(status);
      return status;
    }

    /// <summary>Writes the render; the extension decides the format. Existing files are replaced only on request.</summary>
    public void Save(string path, bool overwrite = false) {
      Save(path, new SaveOptions { overwrite = overwrite ? 1 : 0 });
    }

    /// <summary>Writes the render. The struct's size is set here; "mark" is left in the file unless it is null.</summary>
    public void Save(string path, SaveOptions options, string mark = null) {
      using (var text = new NativeText(mark)) {
        options.struct_size = SizeOf<SaveOptions>();
        options.mark = text.Address;
        LumvikException.Check(lumvik_host_save(Handle, Utf8.Bytes(path), ref options));
      }
    }

    public void Dispose() {
      Handle.Dispose();
    }

    /// <summary>For the field struct_size.</summary>
    public static uint SizeOf<Struct>() {
      return (uint)Marshal.SizeOf(typeof(Struct));
    }

    static SettingsHandle HandleOf(Settings settings) {
      return settings == null ? SettingsHandle.None : settings.Handle;
    }

    static PreviewOptions BgraOptions(int maxWidth, int maxHeight) {
      return new PreviewOptions {
        struct_size = SizeOf<PreviewOptions>(), max_width = maxWidth, max_height = maxHeight, blue_first = 1
      };
    }

    static void CallBack(ref Frame frame, IntPtr user) {
      GCHandle handle = GCHandle.FromIntPtr(user);
      var done = (Action<BgraImage, LumvikException>)handle.Target;
      handle.Free();
      try {
        if (frame.status != (int)Status.Ok) {
          done(null, new LumvikException((Status)frame.status, Utf8.Text(frame.error)));
          return;
        }
        var image = new BgraImage { Width = frame.width, Height = frame.height };
        image.Pixels = new byte[image.Width * image.Height * BytesPerPixel];
        Marshal.Copy(frame.pixels, image.Pixels, 0, image.Pixels.Length);
        done(image, null);
      } catch (Exception) {
        // An exception must not reach the library.
      }
    }
  }
}
