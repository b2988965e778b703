// The Android log's public interface, as far as the product uses it, for hosts that have none.
// Lines go to liblog.so, whichever library of that name the process finds.
#ifndef BOARD_ANDROID_LOG_H_
#define BOARD_ANDROID_LOG_H_

#ifdef __cplusplus
extern "C" {
#endif

// NOLINTNEXTLINE(modernize-use-using): as the platform declares it, for C too
typedef enum android_LogPriority {
  ANDROID_LOG_UNKNOWN = 0,
  ANDROID_LOG_DEFAULT,
  ANDROID_LOG_VERBOSE,
  ANDROID_LOG_DEBUG,
  ANDROID_LOG_INFO,
  ANDROID_LOG_WARN,
  ANDROID_LOG_ERROR,
  ANDROID_LOG_FATAL,
  ANDROID_LOG_SILENT,
} android_LogPriority;

// Both write one line and return a positive value, or a negative one. tag may be null: no tag.
int __android_log_write(int prio, const char* tag, const char* text);
int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((__format__(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif  // BOARD_ANDROID_LOG_H_
