// Picture dumps that the display service has written: what their names say, and their bytes.
//
// Name: "/data/vendor/qxalgo/pq_dump_in_" or "/data/vendor/qxalgo/pq_dump_out_", then
// WIDTHxHEIGHT.FORMAT; what follows a further point is ignored.
#ifndef QXAIQ_DUMP_CAPTURE_H_
#define QXAIQ_DUMP_CAPTURE_H_

// Pixel formats by their code in the dump reply. Each stands under its name in the file names.
enum class PixelFormat : int {
  kRgba = 0,
  kBgr = 1,
  kNv12 = 2,
  kNv16 = 3,
  kNv24 = 4,
  kNv15 = 5,
  kRgb = 6,
};

// Takes width, height (pixels) and format (a PixelFormat) from a dump's path.
// Returns 0; -2 when there is no such file, whatever its name; -1 when the name is none of a dump
// in its folder, or the format is unknown: then width and height may have been stored.
int get_dump_info(char* path, int* width, int* height, int* format);

// Reads a dump whole and deletes it; a file that has taken its name meanwhile stays. `path` must
// have passed get_dump_info, which refuses names outside the dumps' folder. Returns its bytes,
// which the caller frees with free(), and their number in `size`; or null, and the file stays for
// the next attempt. Only regular files are read, never through a link. A file that shrinks
// meanwhile is filled up with zeros.
char* getPqDumpData(char* path, unsigned long* size);

#endif  // QXAIQ_DUMP_CAPTURE_H_
