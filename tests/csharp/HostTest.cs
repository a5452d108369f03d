// Uses the host library as an application does: photographs, settings and texts with names that no single code page has.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using System.Threading;
using Lumvik;
using static Lumvik.HostFunctions;

sealed class HostTest {
  const int MetadataNone = 2;
  readonly string folder;
  readonly string jpeg; // with a position
  readonly string raw;

  public HostTest(string folder, string jpegFile, string rawFile) {
    this.folder = folder;
    jpeg = In("Foto_été_фото_写真.jpg");
    raw = In("Foto_été_фото_写真.arw");
    File.Copy(jpegFile, jpeg, true);
    File.Copy(rawFile, raw, true);
  }

  public void Run() {
    Library();
    Failures();
    DescribedSettings();
    SettingValues();
    Metadata();
    PreviewsAreBlueFirst();
    PostedRenders();
    SavedTexts();
    TwoThreads();
    Disposal();
  }

  string In(string name) {
    return Path.Combine(folder, name);
  }

  static Settings Exposure(float stops) {
    var settings = new Settings();
    settings.SetNumber("exposure", stops);
    return settings;
  }

  void Library() {
    Expect.Equal(Utf8.Text(lumvik_host_version()), "1.0.0", "the version");
    Expect.Equal(Utf8.Text(lumvik_host_status_name((int)Status.NotAPhotograph)), "not_a_photograph", "the name of a status");
    int format;
    LumvikException.Check(lumvik_host_identify(Utf8.Bytes(raw), out format));
    Expect.Equal(format, 1, "the format of a RAW file");
  }

  void Failures() {
    string missing = In("нет_été_写真.arw");
    var failure = Expect.Throws<LumvikException>(() => new Photo(missing), "a missing photograph");
    Expect.Equal(failure.Status, Status.NotFound, "its status");
    Expect.Equal(failure.Message, "cannot read '" + missing + "': there is no such file", "its text");
    using (var settings = new Settings()) {
      failure = Expect.Throws<LumvikException>(() => settings.SetNumber("größe", 1), "an unknown setting");
      Expect.Equal(failure.Status, Status.InvalidArgument, "its status");
      Expect.True(failure.Message.Contains("größe"), "its text: " + failure.Message);
      failure = Expect.Throws<LumvikException>(() => settings.SetNumber("exposure", float.NaN), "NaN");
      Expect.Equal(failure.Status, Status.InvalidArgument, "the status of NaN");
    }
    Expect.Throws<ArgumentException>(() => new Photo("a\0b"), "a path with a NUL");
  }

  void DescribedSettings() {
    UIntPtr index;
    LumvikException.Check(lumvik_host_find_setting(Utf8.Bytes("exposure"), out index));
    var info = new SettingInfo { struct_size = Photo.SizeOf<SettingInfo>() };
    LumvikException.Check(lumvik_host_describe_setting(index, ref info));
    Expect.Equal(Utf8.Text(info.key), "exposure", "the key");
    Expect.Equal(Utf8.Text(info.unit), "stops", "the unit");
    Expect.Equal(info.minimum, -10f, "the minimum");
    Expect.Equal(info.maximum, 10f, "the maximum");
    Expect.Equal(info.engine_value, 0f, "the engine's value");
  }

  void SettingValues() {
    using (Settings settings = Exposure(0.5f)) {
      settings.SetFlag("flip_h", true);
      settings.SetCurve("tone_curves.red", 0, 0, 0.5f, 0.7f, 1, 1);
      using (Settings read = Settings.FromJson(settings.ToJson())) {
        Expect.Equal(read.GetNumber("exposure"), 0.5f, "the number that was read");
        Expect.Equal(read.GetNumber("contrast"), 0f, "a number without a value");
        Expect.True(read.GetFlag("flip_h") && !read.GetFlag("flip_v"), "the flags that were read");
        var points = new float[6];
        UIntPtr count;
        LumvikException.Check(
          lumvik_host_settings_get_curve(read.Handle, Utf8.Bytes("tone_curves.red"), points, (UIntPtr)3, out count));
        Expect.True(points.SequenceEqual(new float[] { 0, 0, 0.5f, 0.7f, 1, 1 }), "the curve that was read");
      }
    }
  }

  void Metadata() {
    using (var photo = new Photo(jpeg)) {
      PhotoInfo info = photo.Info;
      Expect.Equal(info.format, 2, "the format");
      Expect.Equal(info.width + " x " + info.height, "600 x 400", "the size");
      Expect.Equal(photo.Warnings, "", "the warnings");
      Exif exif = photo.Exif;
      Expect.Equal(Utf8.Text(exif.make), "FUJIFILM", "make");
      Expect.Equal(Utf8.Text(exif.model), "FinePixS2Pro", "model");
      Expect.Equal(Utf8.Text(exif.datetime), "2002:08:24 13:59:08", "datetime");
      Expect.Near(exif.gps_latitude, 48.857833, 1e-6, "gps_latitude");
      Expect.Near(exif.gps_longitude, 2.297, 1e-6, "gps_longitude");
      Expect.True(double.IsNaN(exif.as_shot_tint), "the tint of a JPEG");
    }
    var integrity = new Integrity { struct_size = Photo.SizeOf<Integrity>() };
    LumvikException.Check(lumvik_host_check_file(Utf8.Bytes(jpeg), ref integrity));
    Expect.Equal(integrity.is_whole, 1, "is_whole");
    string cut = In("coupé_写真.jpg");
    File.WriteAllBytes(cut, File.ReadAllBytes(jpeg).Take(20000).ToArray());
    Expect.Equal(lumvik_host_check_file(Utf8.Bytes(cut), ref integrity), Status.Damaged, "a truncated file");
    Expect.True(Utf8.Text(integrity.reason).Length > 0, "the reason");
  }

  static byte[] RgbaPreview(Photo photo, int maxWidth, int length) {
    var options = new PreviewOptions { struct_size = Photo.SizeOf<PreviewOptions>(), max_width = maxWidth };
    var pixels = new byte[length];
    GCHandle pinned = GCHandle.Alloc(pixels, GCHandleType.Pinned);
    int width, height;
    Status status = lumvik_host_get_preview(photo.Handle, ref options, pinned.AddrOfPinnedObject(), (UIntPtr)length,
      out width, out height);
    pinned.Free();
    LumvikException.Check(status);
    return pixels;
  }

  void PreviewsAreBlueFirst() {
    using (var photo = new Photo(jpeg)) {
      foreach (int maxWidth in new[] { 0, 150 }) {
        BgraImage bgra = photo.Preview(maxWidth);
        Expect.Equal(bgra.Width + " x " + bgra.Height, maxWidth == 0 ? "600 x 400" : "150 x 100", "the size of a preview");
        byte[] rgba = RgbaPreview(photo, maxWidth, bgra.Pixels.Length);
        for (int i = 0; i < rgba.Length; i += 4) {
          byte red = rgba[i];
          rgba[i] = rgba[i + 2];
          rgba[i + 2] = red;
        }
        Expect.True(bgra.Pixels.SequenceEqual(rgba), "the preview is not BGRA");
      }
      PaddedRows(photo);
    }
  }

  static void PaddedRows(Photo photo) {
    const int Stride = 640;
    BgraImage packed = photo.Preview(150);
    int capacity = Stride * packed.Height;
    IntPtr bitmap = Marshal.AllocHGlobal(capacity);
    photo.CopyPreview(bitmap, Stride, capacity, 150);
    var row = new byte[packed.Width * 4];
    Marshal.Copy(bitmap + Stride * 7, row, 0, row.Length);
    Marshal.FreeHGlobal(bitmap);
    Expect.True(packed.Pixels.Skip(7 * row.Length).Take(row.Length).SequenceEqual(row), "row 7 of a padded bitmap");
    var failure = Expect.Throws<LumvikException>(() => photo.CopyPreview(IntPtr.Zero, Stride, capacity), "a null bitmap");
    Expect.Equal(failure.Status, Status.InvalidArgument, "its status");
  }

  void PostedRenders() {
    using (var photo = new Photo(jpeg))
    using (Settings bright = Exposure(1)) {
      var received = new List<BgraImage>();
      LumvikException reason = null;
      Action<BgraImage, LumvikException> done = (image, failure) => {
        received.Add(image);
        reason = failure;
        throw new InvalidOperationException("must not reach the library");
      };
      ulong ticket = photo.Post(bright, done, 150);
      Expect.Equal(photo.Wait(ticket), Status.Ok, "how the render ended");
      Expect.Equal(received.Count, 1, "the number of calls");
      Expect.True(reason == null, "a render failed: " + reason);
      using (Settings present = photo.GetSettings())
        Expect.Equal(present.GetNumber("exposure"), 1f, "the exposure of the photo");
      Expect.True(received[0].Pixels.SequenceEqual(photo.Preview(150).Pixels), "the posted preview");
      Expect.Throws<LumvikException>(() => photo.Post(null, done, -1), "a negative width");
      Expect.Equal(received.Count, 1, "the number of calls after a post that failed");
    }
  }

  void SavedTexts() {
    const string Mark = "écrit для 写真 😀";
    string saved = In("сохранено_写真.jpg");
    using (var photo = new Photo(raw, 4)) {
      photo.Save(saved, new SaveOptions { metadata = MetadataNone }, Mark);
      var failure = Expect.Throws<LumvikException>(() => photo.Save(saved), "an existing file");
      Expect.Equal(failure.Status, Status.Exists, "its status");
      Expect.True(failure.Message.Contains(saved), "its text: " + failure.Message);
    }
    IntPtr mark;
    LumvikException.Check(lumvik_host_read_mark(Utf8.Bytes(saved), out mark));
    Expect.Equal(Settings.TakeText(mark), Mark, "the mark");
    using (Settings bright = Exposure(1))
      LumvikException.Check(lumvik_host_write_preset(Utf8.Bytes(folder), Utf8.Bytes("Été 写真"), bright.Handle, 0));
    IntPtr names;
    LumvikException.Check(lumvik_host_list_presets(Utf8.Bytes(folder), out names));
    Expect.True(Settings.TakeText(names).Contains("\"Été 写真\""), "the name of the preset");
  }

  // Two threads develop one photo, and each its own: the previews are the same.
  void TwoThreads() {
    using (var shared = new Photo(raw, 4))
    using (Settings bright = Exposure(0.5f)) {
      shared.SetSettings(bright);
      var previews = new byte[4][];
      Exception thrown = null;
      Action<int> develop = i => {
        try {
          previews[i] = shared.Preview().Pixels;
          using (var own = new Photo(raw, 4)) {
            own.SetSettings(bright);
            previews[i + 2] = own.Preview().Pixels;
          }
        } catch (Exception failure) {
          thrown = failure;
        }
      };
      Thread[] threads = { new Thread(() => develop(0)), new Thread(() => develop(1)) };
      foreach (Thread thread in threads) thread.Start();
      foreach (Thread thread in threads) thread.Join();
      Expect.True(thrown == null, "a thread failed: " + thrown);
      Expect.True(previews.All(preview => preview.SequenceEqual(previews[0])), "the previews of two threads differ");
      using (var neutral = new Photo(raw, 4)) {
        double gain = previews[0].Average(x => x) / neutral.Preview().Pixels.Average(x => x);
        Expect.True(gain > 1, "the gain at +0.5 stops: " + gain);
      }
    }
  }

  void Disposal() {
    var photo = new Photo(jpeg);
    var settings = new Settings();
    photo.Dispose();
    photo.Dispose();
    settings.Dispose();
    Expect.Throws<ObjectDisposedException>(() => photo.Preview(), "use after disposal");
    Expect.Throws<ObjectDisposedException>(() => settings.SetNumber("exposure", 1), "use after disposal");
    Action<BgraImage, LumvikException> nothing = (image, failure) => {};
    using (var closing = new Photo(jpeg)) closing.Post(null, nothing);
  }
}
