// The 3D look-up table engine, a closed library of the board that is loaded at run time.
//
// Called in the order init, run, save, deinit. The engine is one for the process and not locked
// here: one caller at a time. Log lines have neither tag nor prefix and ignore the log level.
#ifndef COMMON_DRM_LUT_H_
#define COMMON_DRM_LUT_H_

// Loads the library, the first time, and opens the engine. Returns 0, also when it is open already
// and when the library or its entry points are missing (the later calls report that), or -1 when
// memory runs out.
int drm_lut_init();

// Computes a table from the stored parameters, and stores it in the base parameters of the primary
// display. Returns 0, the engine's negative result, or -1 when the engine is not open or cannot
// compute, or when there is no primary display.
int drm_lut_run();

// Writes the computed table to a file. Returns 0, the engine's negative result, or -1 when the
// engine is not open or can't save.
int drm_lut_save_3dlut(const char* path);

// Closes the engine; the library stays loaded. Returns 0.
int drm_lut_deinit();

#endif  // COMMON_DRM_LUT_H_
