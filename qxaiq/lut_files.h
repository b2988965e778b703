// The files that the engine writes its 3D look-up tables to, numbered from 0 in each process.
#ifndef QXAIQ_LUT_FILES_H_
#define QXAIQ_LUT_FILES_H_

#include <cstdint>

namespace pq {

// One caller at a time: as the engine, it is not locked here.
class LutFiles {
 public:
  // Has the open engine write its table to the next "/data/lut_%d.cube", unless /data is nearly
  // full. Every call takes a number, with or without a file. Reports no failure, since the table is
  // in use already: the log says when files cannot be written, the first time, and when they stop
  // for want of room.
  void write_next();

 private:
  bool has_room();
  void report_missing(const char* file);

  int32_t next_ = 0;
  bool stopped_ = false;   // by want of room, since the file before
  bool reported_ = false;  // that the folder is closed to the daemon
};

}  // namespace pq

#endif  // QXAIQ_LUT_FILES_H_
