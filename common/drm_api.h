// The board's primary display through the kernel's DRM interface.
//
// Each operation opens the device and closes it before it returns; the class keeps no state.
// Callable from any thread; the caller serialises calls that change the display. Log lines have
// neither tag nor prefix and ignore the log level.
#ifndef COMMON_DRM_API_H_
#define COMMON_DRM_API_H_

class DrmApi {
 public:
  // Finds the primary display: the connected connector that the property
  // "vendor.hwc.device.primary" names (a type such as HDMI-A, or a type with its index such as
  // HDMI-A-1), else the first connected built-in panel.
  // fd: the open device, the caller closes it. crtc_id: the CRTC of the connector's first encoder.
  // connector_type: DRM code (drm_mode.h). connector_type_id: counts from 1 within the type.
  // Returns 0, or -1 when there is no such display; the results are then unchanged.
  int get_primary_info(int* fd, unsigned int* crtc_id, unsigned int* connector_type,
                       unsigned int* connector_type_id, unsigned int* connector_id);

  // Loads a gamma table into the primary display's CRTC.
  // red, green, blue: `size` entries each, 0..65535; read during the call only.
  // Returns 0, or a negative result: the kernel's, or -1 when there is no primary display or no
  // gamma property. On failure the display keeps the table it had.
  int set_3x1d_gamma(unsigned int size, unsigned short* red, unsigned short* green,
                     unsigned short* blue);

  // Sets the picture controls of the primary display's connector in one atomic commit and keeps
  // them in the board's base parameters, also when the commit fails.
  // Each value is 0..511, 256 is neutral; both get it as a percentage, and larger values go on
  // unclamped (the kernel refuses them).
  // Returns 0, the negative result of the commit, or -1 when there is no primary display or its
  // connector lacks one of the four properties; then nothing is kept either.
  int set_bcsh(unsigned short brightness, unsigned short contrast, unsigned short saturation,
               unsigned short hue);
};

#endif  // COMMON_DRM_API_H_
