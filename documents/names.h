// Every path and every system property that the daemon uses by name. Constants only: every folder
// of the daemon may include this header.
//
// android/sepolicy has a rule for each of them; tools/check-android compares the two.
#ifndef DOCUMENTS_NAMES_H_
#define DOCUMENTS_NAMES_H_

namespace pq {

// The documents' folder; other vendor processes read the documents there.
inline constexpr char kDocumentFolder[] = "/data/vendor/qxalgo";
inline constexpr char kPqDocument[] = "/data/vendor/qxalgo/pq_config.json";
inline constexpr char kAipqDocument[] = "/data/vendor/qxalgo/aipq_config.json";

// Picture dumps, which the display service writes: prefix, size and format (dump_capture.h).
inline constexpr char kInputDumpPrefix[] = "/data/vendor/qxalgo/pq_dump_in_";
inline constexpr char kOutputDumpPrefix[] = "/data/vendor/qxalgo/pq_dump_out_";

// Where the engine writes a computed 3D LUT: the folder, and a printf format for the file's number.
inline constexpr char kLutFolder[] = "/data";
inline constexpr char kLutFileFormat[] = "/data/lut_%d.cube";

// Android's programs: the activity manager, and calls of system services.
inline constexpr char kActivityManager[] = "/system/bin/am";
inline constexpr char kServiceCaller[] = "/system/bin/service";

// Settings, read once at start-up.
inline constexpr char kLogLevelProperty[] = "persist.vendor.aiqtool.log";
inline constexpr char kKillAppProperty[] = "persist.vendor.aiqtool.killapp";

// The board: its platform, and the display that the compositor calls primary.
inline constexpr char kPlatformProperty[] = "ro.board.platform";
inline constexpr char kPrimaryDisplayProperty[] = "vendor.hwc.device.primary";

// Requests for a dump, "1" for the display service to see, and the path that it answers with.
inline constexpr char kInputDumpProperty[] = "vendor.tvinput.qxpq.dump.in";
inline constexpr char kOutputDumpProperty[] = "vendor.tvinput.qxpq.dump.out";
inline constexpr char kDumpPathProperty[] = "vendor.tvinput.qxpq.dump.path";

// Counters that tell the display service of a change (change_counter.h).
inline constexpr char kTimelineCounter[] = "vendor.tvinput.qxpq.timeline";
inline constexpr char kAcmCounter[] = "vendor.tvinput.qxpq.update_aisd_acm_tab";
inline constexpr char kDciCounter[] = "vendor.tvinput.qxpq.update_aisd_dci_tab";

}  // namespace pq

#endif  // DOCUMENTS_NAMES_H_
