// Develops a photograph and prints what took it, from the files in this folder; for .NET, .NET Framework and Mono.
//
//   mcs -out:Develop.exe *.cs
//   Develop.exe photo.ARW photo.jpg
using System;
using System.Text;
using Lumvik;

static class Develop {
  static int Main(string[] arguments) {
    if (arguments.Length != 2) {
      Console.Error.WriteLine("usage: Develop IN OUT");
      return 2;
    }
    Console.OutputEncoding = new UTF8Encoding(false);
    try {
      using (var photo = new Photo(arguments[0]))
      using (var settings = new Settings()) {
        settings.SetNumber("exposure", 0.5f); // stops
        settings.SetNumber("contrast", 20);
        photo.SetSettings(settings);
        BgraImage preview = photo.Preview(800, 600);
        photo.Save(arguments[1], true); // with its metadata
        Exif exif = photo.Exif;
        Console.WriteLine("{0} {1}, ISO {2}; a preview of {3} x {4}", Utf8.Text(exif.make), Utf8.Text(exif.model),
          exif.iso, preview.Width, preview.Height);
      }
      return 0;
    } catch (LumvikException failure) {
      Console.Error.WriteLine(failure.Message);
      return 1;
    }
  }
}
