// The board's store of display base parameters (libbaseparameter.so), as far as the daemon uses it.
//
// The library is closed; this header declares what we call and the record layouts we depend on.
// All records are little-endian, laid out exactly as the store hands them out. A slot that the
// daemon reads only one byte of is a uint8_t followed by its unused bytes; with those every member
// lies on its natural alignment.
// Thread rule: one object is used by one thread; objects of their own may be used at once.
#ifndef PLATFORM_BASEPARAMETER_API_H_
#define PLATFORM_BASEPARAMETER_API_H_

#include <cstddef>
#include <cstdint>

// Picture-quality record: colour-space conversion, DCI, ACM and gamma.
struct pq_tuning_info {
  uint8_t csc_enable;
  uint8_t csc_enable_unused[3];
  uint32_t csc_mode;  // 1: low latency, 0: high quality
  uint32_t csc_brightness;
  uint32_t csc_contrast;
  uint32_t csc_saturation;
  uint32_t csc_hue;
  uint32_t csc_r_gain;  // 256 is unity
  uint32_t csc_g_gain;
  uint32_t csc_b_gain;
  uint8_t dci_enable;
  uint8_t dci_enable_unused;
  uint16_t dci_wgt_coef_low[33];  // curve points, 0..1023
  uint16_t dci_wgt_coef_mid[33];
  uint16_t dci_wgt_coef_high[33];
  uint16_t dci_weight_low[32];
  uint16_t dci_weight_mid[32];
  uint16_t dci_weight_high[32];
  uint8_t acm_enable;
  uint8_t acm_enable_unused;
  int16_t acm_table_delta_y_by_h[65];
  int16_t acm_table_delta_h_by_h[65];
  int16_t acm_table_delta_s_by_h[65];
  int16_t acm_table_gain_y_by_y[585];  // 65 hue rows of 9
  int16_t acm_table_gain_h_by_y[585];
  int16_t acm_table_gain_s_by_y[585];
  int16_t acm_table_gain_y_by_s[845];  // 65 hue rows of 13
  int16_t acm_table_gain_h_by_s[845];
  int16_t acm_table_gain_s_by_s[845];
  uint32_t lum_gain;
  uint32_t hue_gain;
  uint32_t sat_gain;
  uint8_t gamma_unused[2];
  uint16_t gamma_tab_r[1024];
  uint16_t gamma_tab_g[1024];
  uint16_t gamma_tab_b[1024];
  uint8_t tail_unused[6];
};
inline constexpr size_t kPqTuningInfoSize = 15564;
static_assert(sizeof(pq_tuning_info) == kPqTuningInfoSize);
static_assert(offsetof(pq_tuning_info, dci_wgt_coef_low) == 38);
static_assert(offsetof(pq_tuning_info, acm_table_delta_y_by_h) == 430);
static_assert(offsetof(pq_tuning_info, acm_table_gain_y_by_s) == 4330);
static_assert(offsetof(pq_tuning_info, lum_gain) == 9400);
static_assert(offsetof(pq_tuning_info, gamma_tab_r) == 9414);
static_assert(offsetof(pq_tuning_info, gamma_tab_b) == 13510);

// Sharpening record.
struct pq_sharp_info {
  uint8_t enable;
  uint8_t enable_unused[3];
  uint32_t peaking_gain;
  uint8_t enable_shoot_ctrl;
  uint8_t enable_shoot_ctrl_unused[3];
  uint32_t shoot_ctrl_over;
  uint32_t shoot_ctrl_under;
  uint8_t enable_coring_ctrl;
  uint8_t enable_coring_ctrl_unused;
  uint16_t coring_ctrl_ratio[4];
  uint16_t coring_ctrl_zero[4];
  uint16_t coring_ctrl_thrd[4];
  uint8_t enable_gain_ctrl;
  uint8_t enable_gain_ctrl_unused;
  uint16_t gain_ctrl_pos[4];
  uint8_t enable_limit_ctrl;
  uint8_t enable_limit_ctrl_unused;
  uint16_t limit_ctrl_pos0[4];
  uint16_t limit_ctrl_pos1[4];
  uint16_t limit_ctrl_bnd_pos[4];
  uint16_t limit_ctrl_ratio[4];
  uint8_t tail_unused[26];
};
inline constexpr size_t kPqSharpInfoSize = 116;
static_assert(sizeof(pq_sharp_info) == kPqSharpInfoSize);
static_assert(offsetof(pq_sharp_info, coring_ctrl_ratio) == 22);
static_assert(offsetof(pq_sharp_info, gain_ctrl_pos) == 48);
static_assert(offsetof(pq_sharp_info, limit_ctrl_pos0) == 58);

// One content class of the AI super-resolution stage.
struct aisr_class_info {
  uint32_t usm_gain;
  uint8_t usm_enable_ctrl;
  uint8_t usm_enable_ctrl_unused[3];
  uint32_t usm_ctrl_over;
  uint32_t usm_ctrl_under;
  uint32_t fusion_gain;
  uint8_t fusion_enable_ctrl;
  uint8_t fusion_enable_ctrl_unused[3];
  uint32_t fusion_ctrl_over;
  uint32_t fusion_ctrl_under;
};
static_assert(sizeof(aisr_class_info) == 32);

// AI scene detection (AISD) and super-resolution (AISR) record.
struct aipq_info {
  uint8_t aisd_enable;
  uint8_t aisr_enable;
  uint8_t enable_unused[2];
  uint32_t aisr_fix_model_idx;
  uint8_t aisr_tuning_enable;
  uint8_t aisr_tuning_enable_unused[3];
  aisr_class_info natural;
  aisr_class_info textual;
  uint8_t tail_unused[4];
};
inline constexpr size_t kAipqInfoSize = 80;
static_assert(sizeof(aipq_info) == kAipqInfoSize);
static_assert(offsetof(aipq_info, natural) == 12);
static_assert(offsetof(aipq_info, textual) == 44);

// A 3D look-up table as the store keeps it: a size, then room for one unsigned 16-bit value a
// channel and lattice point of a 17x17x17 lattice. The engine fills it; the daemon passes it on.
struct cubic_lut_data {
  uint16_t size;
  uint8_t values[29478];
};
static_assert(sizeof(cubic_lut_data) == 29480);
static_assert(sizeof(cubic_lut_data::values) == size_t{3} * 17 * 17 * 17 * sizeof(uint16_t));

// All calls return 0 or a negative value; a getter that fails leaves its record as it was.
// connector_type is the DRM connector type code, connector_index counts from 0 within the type.
class baseparameter_api {
 public:
  baseparameter_api();
  ~baseparameter_api();  // NOLINT(performance-trivially-destructible): the library's own
  baseparameter_api(const baseparameter_api&) = delete;
  baseparameter_api& operator=(const baseparameter_api&) = delete;

  int get_version(unsigned short* first, unsigned short* second);
  int get_pq_tuning_info(pq_tuning_info* info);
  int get_pq_sharp_info(pq_sharp_info* info);
  int get_aipq_info(aipq_info* info);

  // Picture controls, in percent (0..100).
  int set_brightness(unsigned int connector_type, unsigned int connector_index,
                     unsigned short value);
  int set_contrast(unsigned int connector_type, unsigned int connector_index, unsigned short value);
  int set_saturation(unsigned int connector_type, unsigned int connector_index,
                     unsigned short value);
  int set_hue(unsigned int connector_type, unsigned int connector_index, unsigned short value);
  int set_cubic_lut_data(unsigned int connector_type, unsigned int connector_index,
                         cubic_lut_data* data);

 private:
  // Room for the library's own members, whose number and size are not ours to know.
  alignas(16) unsigned char library_members_[4096];
};

#endif  // PLATFORM_BASEPARAMETER_API_H_
