// The tests of the C# binding in examples/csharp.
//
//   CSharpTests JPEG_FILE RAW_FILE
using System;
using System.IO;
using System.Text;

static class Program {
  static int Main(string[] arguments) {
    Console.OutputEncoding = new UTF8Encoding(false);
    string folder = Path.Combine(Path.GetTempPath(), "lumvik-" + Guid.NewGuid());
    Directory.CreateDirectory(folder);
    try {
      using (var engine = new EngineTest(folder, arguments[0], arguments[1])) engine.Run();
      new HostTest(folder, arguments[0], arguments[1]).Run();
      return 0;
    } catch (Exception failure) {
      Console.Error.WriteLine(failure);
      return 1;
    } finally {
      Directory.Delete(folder, true);
    }
  }
}
