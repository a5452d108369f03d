// Calls every function of lumvik.h.
using System;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using Lumvik;
using static Lumvik.EngineFunctions;

sealed class EngineTest : IDisposable {
  const int Ok = 0;
  const int Quality = 4;
  const int Width = 400;
  const int Height = 266;

  readonly string folder; // for files with names that no single code page has
  readonly byte[] jpeg;
  readonly byte[] raw;
  readonly EngineContext context = lumvik_create_context();

  public EngineTest(string folder, string jpegFile, string rawFile) {
    this.folder = folder;
    jpeg = Copied(jpegFile, "Foto_été_фото_写真.jpg");
    raw = Copied(rawFile, "Foto_été_фото_写真.arw");
  }

  public void Dispose() {
    context.Dispose();
  }

  public void Run() {
    Library();
    Failures();
    Load();
    RenderAndHistogram();
    Metadata();
    Exports();
    FloatSetters();
    OtherSetters();
    AutomaticTools();
    Subject();
    PathTools();
    lumvik_unload(context);
    Expect.Equal(lumvik_get_width(context), 0, "the width without an image");
    lumvik_shutdown();
  }

  string In(string name) {
    return Path.Combine(folder, name);
  }

  byte[] Copied(string file, string name) {
    File.Copy(file, In(name), true);
    return Utf8.Bytes(In(name));
  }

  string LastError() {
    return Utf8.Text(lumvik_last_error(context));
  }

  byte[] Preview() {
    var pixels = new byte[Width * Height * 4];
    Expect.Equal(lumvik_get_preview(context, pixels, pixels.Length), Ok, "lumvik_get_preview");
    return pixels;
  }

  void Library() {
    Expect.Equal(lumvik_init(), Ok, "lumvik_init");
    Expect.Equal(Utf8.Text(lumvik_version()), "1.0.0", "the version");
    Expect.True(!context.IsInvalid, "lumvik_create_context failed");
    var temporary = lumvik_create_context();
    lumvik_destroy_context(temporary.DangerousGetHandle());
    temporary.SetHandleAsInvalid();
  }

  void Failures() {
    Expect.Equal(Utf8.Text(lumvik_last_error(new EngineContext())), "null context", "a null context");
    Expect.Equal(LastError(), "", "the text without a failure");
    string missing = In("нет_写真_été.jpg");
    Expect.Equal(lumvik_load_arw(context, Utf8.Bytes(missing), 1), -1, "loading a missing file");
    Expect.Equal(LastError(), "OpenCV could not read: " + missing, "the text of a missing file");
    Expect.Equal(lumvik_process(context), -1, "rendering without an image");
    Expect.Equal(LastError(), "no image loaded", "the text without an image");
  }

  void Load() {
    Expect.Equal(lumvik_load_arw(context, raw, Quality), Ok, LastError());
    Expect.Equal(lumvik_get_width(context), Width, "the width");
    Expect.Equal(lumvik_get_height(context), Height, "the height");
  }

  void RenderAndHistogram() {
    Expect.Equal(lumvik_process(context), Ok, "lumvik_process");
    byte[] pixels = Preview();
    Expect.Equal(lumvik_get_preview(context, pixels, pixels.Length - 1), -1, "a buffer that is too small");
    Expect.Equal(LastError(), "output buffer too small", "its text");
    var bins = new uint[4][];
    for (int i = 0; i < bins.Length; ++i) bins[i] = new uint[256];
    Expect.Equal(lumvik_get_histogram(context, bins[0], bins[1], bins[2], bins[3]), Ok, "lumvik_get_histogram");
    for (int channel = 0; channel < 3; ++channel) {
      long brightest = Enumerable.Range(0, Width * Height).Count(i => pixels[4 * i + channel] == 255);
      Expect.Equal(bins[channel][255], (uint)brightest, "the count of level 255 in channel " + channel);
    }
    Expect.Equal(bins[3].Sum(count => (long)count), Width * Height, "the sum of the luminance counts");
  }

  void Metadata() {
    Expect.Equal(Marshal.SizeOf(typeof(ExifInfo)), 336, "the size of ExifInfo");
    Expect.Equal((int)Marshal.OffsetOf(typeof(ExifInfo), "gps_latitude"), 320, "the offset of gps_latitude");
    ExifInfo info;
    Expect.Equal(lumvik_get_exif(context, out info), Ok, "lumvik_get_exif");
    Expect.Equal(Utf8.Text(info.make), "Sony", "make");
    Expect.Equal(Utf8.Text(info.model), "ILCE-7M3", "model");
    Expect.Equal(Utf8.Text(info.lens), "", "lens of a RAW file");
    Expect.Equal(info.focal_length, 35f, "focal_length");
    Expect.Equal(info.f_number, 8f, "f_number");
    Expect.Equal(info.exposure_time, 1 / 250f, "exposure_time");
    Expect.Equal(info.iso, 100, "iso");
    Expect.Equal(info.width + " x " + info.height, Width + " x " + Height, "the size");
    Expect.Equal(info.reserved, 0, "reserved");
    Expect.True(double.IsNaN(info.gps_latitude), "gps_latitude of a RAW file");

    using (EngineContext other = lumvik_create_context()) {
      Expect.Equal(lumvik_load_arw(other, jpeg, 1), Ok, Utf8.Text(lumvik_last_error(other)));
      Expect.Equal(lumvik_get_exif(other, out info), Ok, "lumvik_get_exif");
      string copy = In("avec_exif_写真.jpg");
      Expect.Equal(lumvik_export_jpeg(other, Utf8.Bytes(copy), 90, 0, 1), Ok, "exporting a JPEG with EXIF");
      StartsWith(copy, 0xff, 0xd8, 0xff, 0xe1);
    }
    Expect.Equal(Utf8.Text(info.model), "FinePixS2Pro", "model of a JPEG");
    Expect.Equal(Utf8.Text(info.datetime), "2002:08:24 13:59:08", "datetime");
    Expect.Equal(info.orientation, 1, "orientation");
    Expect.Near(info.gps_latitude, 48.857833, 1e-6, "gps_latitude");
    Expect.Near(info.gps_longitude, 2.297, 1e-6, "gps_longitude");
  }

  void Exports() {
    string jpeg = In("écrit_写真.jpg"), png = In("écrit_写真.png"), tiff = In("écrit_写真.tif");
    Expect.Equal(lumvik_export_jpeg(context, Utf8.Bytes(jpeg), 90, 0, 1), Ok, LastError());
    Expect.Equal(lumvik_export_png(context, Utf8.Bytes(png), 16), Ok, LastError());
    Expect.Equal(lumvik_export_tiff(context, Utf8.Bytes(tiff)), Ok, LastError());
    StartsWith(jpeg, 0xff, 0xd8, 0xff, 0xe0);
    StartsWith(png, 0x89, 0x50, 0x4e, 0x47);
    StartsWith(tiff, 0x49, 0x49, 0x2a, 0x00);
    Expect.Equal((int)File.ReadAllBytes(png)[24], 16, "the bit depth of the PNG");
  }

  static void StartsWith(string path, params byte[] expected) {
    Expect.True(File.ReadAllBytes(path).Take(expected.Length).SequenceEqual(expected), "the content of " + path);
  }

  // Calls a setter after those that it depends on; the preview must differ from that without it. Afterwards all
  // adjustments have their defaults.
  void Changes(string what, Action setter, Action before = null) {
    lumvik_reset_adjustments(context);
    if (before != null) before();
    byte[] without = Preview();
    setter();
    Expect.True(!Preview().SequenceEqual(without), what + " changes nothing");
    lumvik_reset_adjustments(context);
  }

  void FloatSetters() {
    Changes("exposure", () => lumvik_set_exposure(context, 1));
    Changes("brightness", () => lumvik_set_brightness(context, 50));
    Changes("contrast", () => lumvik_set_contrast(context, 50));
    Changes("highlights", () => lumvik_set_highlights(context, -80));
    Changes("shadows", () => lumvik_set_shadows(context, 80));
    Changes("whites", () => lumvik_set_whites(context, 50));
    Changes("blacks", () => lumvik_set_blacks(context, 50));
    Changes("temperature", () => lumvik_set_temperature(context, 6500));
    Changes("tint", () => lumvik_set_tint(context, 50));
    Changes("saturation", () => lumvik_set_saturation(context, -50));
    Changes("vibrance", () => lumvik_set_vibrance(context, 80));
    Changes("clarity", () => lumvik_set_clarity(context, 80));
    Changes("texture", () => lumvik_set_texture(context, 80));
    Changes("dehaze", () => lumvik_set_dehaze(context, 80));
    Changes("nr_luminance", () => lumvik_set_nr_luminance(context, 80));
    Changes("nr_color", () => lumvik_set_nr_color(context, 80));
    Action sharpen = () => lumvik_set_sharpening_amount(context, 150);
    Changes("sharpening_amount", sharpen);
    Changes("sharpening_radius", () => lumvik_set_sharpening_radius(context, 3), sharpen);
    Changes("sharpening_threshold", () => lumvik_set_sharpening_threshold(context, 5000), sharpen);
    Changes("distortion", () => lumvik_set_distortion(context, 50));
    Changes("ca_correction", () => lumvik_set_ca_correction(context, 100));
    Changes("lens_vignette", () => lumvik_set_lens_vignette(context, 100));
    Action purple = () => lumvik_set_split_toning(context, 1, 270, 100, 0);
    Changes("defringe", () => lumvik_set_defringe(context, 100), purple);
    Changes("rotation", () => lumvik_set_rotation(context, 5));
    Changes("perspective_h", () => lumvik_set_perspective_h(context, 50));
    Changes("perspective_v", () => lumvik_set_perspective_v(context, 50));
    Action vignette = () => lumvik_set_vignette_amount(context, 80);
    Changes("vignette_amount", vignette);
    Changes("vignette_midpoint", () => lumvik_set_vignette_midpoint(context, 20), vignette);
    Changes("vignette_roundness", () => lumvik_set_vignette_roundness(context, -100), vignette);
  }

  void OtherSetters() {
    Changes("hsl", () => Enumerable.Range(0, 8).ToList().ForEach(band => lumvik_set_hsl(context, band, 60, 50, 20)));
    Changes("split_toning", () => lumvik_set_split_toning(context, 0, 40, 80, 20));
    Changes("flip_v", () => lumvik_set_flip_v(context, 1));
    byte[] left = Preview();
    lumvik_set_flip_h(context, 1);
    byte[] right = Preview();
    for (int i = 0; i < 4; ++i) Expect.Equal(right[i], left[4 * (Width - 1) + i], "the first pixel of the flipped image");
    lumvik_reset_adjustments(context);

    Action curve = () => lumvik_set_tone_curve(context, 1, new float[] { 0, 0, 0.5f, 0.7f, 1, 1 }, 3);
    Changes("tone_curve", curve);
    Changes("reset_tone_curve", () => lumvik_reset_tone_curve(context, 1), curve);

    lumvik_set_crop(context, 0.25f, 0.25f, 0.5f, 0.5f);
    Expect.Equal(lumvik_process(context), Ok, LastError());
    Expect.Equal(lumvik_get_width(context), Width / 2, "the width of the crop");
    lumvik_reset_adjustments(context);
    Expect.Equal(lumvik_get_width(context), Width, "the width after a reset");

    byte[] smooth = Preview();
    lumvik_set_grain_amount(context, 100);
    double fine = Roughness(Preview(), smooth);
    lumvik_set_grain_size(context, 100);
    Expect.True(fine > 1, "grain: " + fine);
    Expect.True(Roughness(Preview(), smooth) < 0.9 * fine, "the size of the grain");
    lumvik_reset_adjustments(context);
  }

  // The mean difference of neighbors in what was added to the red channel.
  static double Roughness(byte[] pixels, byte[] smooth) {
    double sum = 0;
    for (int i = 4; i < pixels.Length; i += 4)
      sum += Math.Abs(pixels[i] - smooth[i] - (pixels[i - 4] - smooth[i - 4]));
    return sum / (Width * Height);
  }

  void AutomaticTools() {
    float exposure, temperature, tint, x, y, w, h, angle;
    var slots = new float[32];
    Expect.Equal(lumvik_auto_exposure(context, out exposure), Ok, "lumvik_auto_exposure");
    Expect.True(exposure >= -0.25f && exposure <= 1, "the suggested exposure: " + exposure);
    Expect.Equal(lumvik_auto_white_balance(context, out temperature, out tint), Ok, "lumvik_auto_white_balance");
    Expect.Equal(temperature, 6500f, "the suggested temperature");
    Expect.Equal(tint, 0f, "the suggested tint");
    Expect.Equal(lumvik_auto_enhance(context, slots), Ok, "lumvik_auto_enhance");
    Expect.Equal(slots[7], 6500f, "slot 7");
    Expect.Equal(slots[10], 16f, "slot 10");
    Expect.Equal(lumvik_auto_crop(context, out x, out y, out w, out h), Ok, "lumvik_auto_crop");
    Expect.True(x >= 0 && y >= 0 && w > 0.3f && h > 0.3f && x + w <= 1 && y + h <= 1, "the suggested crop");
    Expect.Equal(lumvik_auto_straighten(context, out angle), Ok, "lumvik_auto_straighten");
    Expect.True(Math.Abs(angle) <= 30, "the measured tilt: " + angle);
  }

  void Subject() {
    var mask = new byte[Width * Height];
    Expect.Equal(lumvik_get_mask(context, mask, mask.Length), -1, "a mask before segmentation");
    Expect.Equal(LastError(), "no segmentation mask — call lumvik_segment_subject first", "its text");
    byte[] sharp = Preview();
    Expect.Equal(lumvik_segment_subject(context, 0.5f, 0.5f), Ok, LastError());
    Expect.Equal(lumvik_get_mask(context, mask, mask.Length), Ok, "lumvik_get_mask");
    Expect.True(mask.Contains((byte)255) && mask.Contains((byte)0), "a mask without a subject or a background");
    Expect.Equal(mask[0], (byte)0, "the mask outside of the searched rectangle");
    lumvik_set_bg_blur(context, 100);
    Expect.True(!Preview().SequenceEqual(sharp), "bg_blur changes nothing");
    lumvik_set_bg_blur(context, 0);
    string cutout = In("sujet_写真.png");
    Expect.Equal(lumvik_export_subject_png(context, Utf8.Bytes(cutout)), Ok, LastError());
    StartsWith(cutout, 0x89, 0x50, 0x4e, 0x47);
    Expect.Equal((int)File.ReadAllBytes(cutout)[25], 6, "the color type of the cutout: RGB with alpha");
  }

  void PathTools() {
    IntPtr data;
    int size;
    ulong hash, again;
    byte[] jpeg = Utf8.Bytes(In("écrit_写真.jpg"));
    Expect.Equal(lumvik_extract_thumbnail(jpeg, out data, out size), Ok, "lumvik_extract_thumbnail");
    var thumbnail = new byte[size];
    Marshal.Copy(data, thumbnail, 0, size);
    lumvik_free_thumb(data);
    string copy = In("vignette_写真.jpg");
    File.WriteAllBytes(copy, thumbnail);
    StartsWith(copy, 0xff, 0xd8, 0xff);
    Expect.Equal(lumvik_phash(jpeg, out hash), Ok, "lumvik_phash");
    Expect.Equal(lumvik_phash(Utf8.Bytes(copy), out again), Ok, "lumvik_phash of the thumbnail");
    int different = Enumerable.Range(0, 64).Count(bit => ((hash ^ again) >> bit & 1) != 0);
    Expect.True(hash != 0 && different <= 8, different + " bits of the hash differ");
  }
}
