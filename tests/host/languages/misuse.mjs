// Misuses of the engine and of the host library from Node.js, through koffi: each gives a status, and the
// process lives.
//
//   node misuse.mjs LIBRARY RAW_FILE
import koffi from "koffi";
import { mkdtempSync, rmSync, truncateSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

const [libraryPath, rawFile] = process.argv.slice(2);
const folder = mkdtempSync(join(tmpdir(), "lumvik-"));
const library = koffi.load(libraryPath);
koffi.struct("SaveOptions", {
  struct_size: "uint32", format: "int32", quality: "int32", bits: "int32", max_width: "int32", max_height: "int32",
  metadata: "int32", overwrite: "int32", no_profile: "int32", copyright: "const char*", mark: "const char*",
});

const statusName = library.func("const char* lumvik_host_status_name(int32)");
const lastError = library.func("const char* lumvik_host_last_error()");
const open = library.func("int lumvik_host_open(const char* path, void* options, _Out_ uintptr_t* photo)");
const close = library.func("int lumvik_host_close(uintptr_t photo)");
const render = library.func("int lumvik_host_render(uintptr_t photo)");
const histogram = library.func("int lumvik_host_get_histogram(uintptr_t photo, _Out_ uint8_t* histogram)");
const getInfo = library.func("int lumvik_host_get_info(uintptr_t photo, uint8_t* info)");
const getPreview = library.func(
  "int lumvik_host_get_preview(uintptr_t photo, void* options, uint8_t* pixels, size_t capacity, void* width, void* height)");
const findSubject = library.func("int lumvik_host_find_subject(uintptr_t photo, float x, float y)");
const setSettings = library.func("int lumvik_host_set_settings(uintptr_t photo, uintptr_t settings)");
const save = library.func("int lumvik_host_save(uintptr_t photo, const char* path, SaveOptions* options)");
const saveCutout = library.func("int lumvik_host_save_cutout(uintptr_t photo, const char* path, void* options)");
const create = library.func("int lumvik_host_settings_create(_Out_ uintptr_t* settings)");
const createNowhere = library.func("int lumvik_host_settings_create(void* settings)");
const clear = library.func("int lumvik_host_settings_clear(uintptr_t settings)");
const closeSettings = library.func("int lumvik_host_settings_close(uintptr_t settings)");
const setNumber = library.func("int lumvik_host_settings_set_number(uintptr_t settings, const char* key, float value)");
const toJson = library.func("int lumvik_host_settings_to_json(uintptr_t settings, _Out_ uintptr_t* json)");
const free = library.func("void lumvik_host_free(uintptr_t memory)");

const METADATA_NONE = 2;
const HISTOGRAM_BYTES = 4096;
const LARGE_SIDE = 60000; // more pixels than the decoder accepts

function opened(call, ...args) {
  const handle = [0];
  if (call(...args, handle) !== 0) throw new Error(lastError());
  return handle[0];
}

const photo = opened(open, rawFile, null);
const settings = opened(create);
const path = (name) => join(folder, name);
const saveAs = (name, bits = 0) =>
  save(photo, path(name), {
    struct_size: koffi.sizeof("SaveOptions"), format: 0, quality: 0, bits, max_width: 0, max_height: 0,
    metadata: METADATA_NONE, overwrite: 1, no_profile: 0, copyright: null, mark: null,
  });

function cutoutOfACrop() {
  const cropped = opened(create);
  const status = findSubject(photo, -1, -1) || setNumber(cropped, "crop.w", 0.5) || setSettings(photo, cropped) ||
    saveCutout(photo, path("cutout.png"), null);
  closeSettings(cropped);
  setSettings(photo, 0);
  return status;
}

function imageTooLarge() {
  const size = 3 * LARGE_SIDE ** 2;
  const header = Buffer.alloc(54);
  header.write("BM");
  header.writeUInt32LE((size + 54) % 2 ** 32, 2);
  [54, 40, LARGE_SIDE, LARGE_SIDE].forEach((number, i) => header.writeUInt32LE(number, 10 + 4 * i));
  header.writeUInt16LE(1, 26);
  header.writeUInt16LE(24, 28);
  writeFileSync(path("large.bmp"), header);
  truncateSync(path("large.bmp"), size + 54);
  const status = open(path("large.bmp"), null, [0]);
  return status === 0 ? "ok" : "a failure";
}

// Asynchronous calls run on threads.
function concurrentCalls() {
  const one = () =>
    new Promise((resolve) =>
      histogram.async(photo, Buffer.alloc(HISTOGRAM_BYTES), (error, status) => resolve(error ? -1 : status)));
  return Promise.all(Array.from({ length: 8 }, one)).then((statuses) => Math.max(...statuses));
}

function afterClose(call) {
  const closed = opened(create);
  closeSettings(closed);
  return call(closed);
}

function releaseTwice() {
  const json = [0];
  const status = toJson(settings, json);
  free(json[0]);
  free(json[0]);
  return status;
}

const misuses = [
  ["saving to a path without a dot", () => saveAs("out"), "invalid_argument"],
  ["saving with an unknown extension", () => saveAs("out.xyz"), "invalid_argument"],
  ["saving into a missing folder", () => saveAs("missing/out.jpg"), "not_found"],
  ["saving a JPEG with 16 bits", () => saveAs("out.jpg", 16), "invalid_argument"],
  ["sharpening with radius 0",
    () => setNumber(settings, "sharpening_amount", 50) || setNumber(settings, "sharpening_radius", 0), "invalid_argument"],
  ["a setting that is NaN", () => setNumber(settings, "exposure", NaN), "invalid_argument"],
  ["an infinite setting", () => setNumber(settings, "tint", -Infinity), "invalid_argument"],
  ["a setting far out of range", () => setNumber(settings, "clarity", 1e30), "invalid_argument"],
  ["a cutout of a cropped photo", cutoutOfACrop, "unsupported"],
  ["an image that is too large", imageTooLarge, "a failure"],
  ["concurrent calls on one photo", concurrentCalls, "ok"],
  ["use after closing", () => afterClose(clear), "invalid_handle"],
  ["closing twice", () => afterClose(closeSettings), "invalid_handle"],
  ["releasing twice", releaseTwice, "ok"],
  ["a handle of another kind", () => render(settings), "invalid_handle"],
  ["a made-up handle", () => render(0xdead), "invalid_handle"],
  ["a null handle", () => render(0), "invalid_handle"],
  ["a null path", () => open(null, null, [0]), "invalid_argument"],
  ["a null output", () => createNowhere(null), "invalid_argument"],
  ["a struct without its size", () => getInfo(photo, Buffer.alloc(200)), "invalid_argument"],
  ["a buffer that is too small", () => getPreview(photo, null, Buffer.alloc(4), 4, null, null), "buffer_too_small"],
];

let wrong = 0;
for (const [what, misuse, expected] of misuses) {
  const status = await misuse();
  const name = typeof status === "string" ? status : statusName(status);
  if (name === expected) continue;
  console.log(`${what}: ${name}, not ${expected}: ${lastError()}`);
  ++wrong;
}
// After all this both objects are of use.
if (saveAs("out.jpg") !== 0 || clear(settings) !== 0) {
  console.log(`the photo is not of use afterwards: ${lastError()}`);
  ++wrong;
}
closeSettings(settings);
close(photo);
rmSync(folder, { recursive: true });
console.log(`${misuses.length} misuses, ${wrong} wrong`);
process.exit(wrong === 0 ? 0 : 1);
