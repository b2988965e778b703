// The picture-quality parameters: the in-memory form of the PQ and AIPQ documents.
//
// Written once, here: members, their order and their names are those of the JSON documents, and
// the type tables (pq_tables.cpp) derive from these lines. To add a parameter, add its line here
// and one to docs/documents.md; the tests named Documents say where the two differ.
//
// Numbers are stored as the tool sends them; nothing here checks ranges. Switches are 0 (off) or
// 1 (on). Strings are heap copies that belong to the structure's owner once a document was loaded.
// Zeroed structures are valid; a pq_config has over 128,000 bytes, mind the stack.
//
// `gamma` is also a function of the C mathematics library: with <cmath> in sight, say
// `struct gamma` where the type is meant. The same spelling is needed for a member that has its
// structure's name.
#ifndef J2S_PQ_SCHEMA_H_
#define J2S_PQ_SCHEMA_H_

#include <cstdint>

#include "j2s/schema.h"

// Colour-space conversion with brightness, contrast, saturation, hue (BCSH) and channel gains.
struct csc {
  J2S_STRUCT(csc);
  J2S_MEMBER(char*, name);
  J2S_MEMBER(int8_t, cscEnable);
  J2S_MEMBER(char*, cscMode);           // "LOW_LATENCY_MODE" or "HIGH_QUALITY_MODE"
  J2S_MEMBER(uint32_t, cscBrightness);  // 0..511, 256 is neutral, as for the next three
  J2S_MEMBER(uint32_t, cscHue);
  J2S_MEMBER(uint32_t, cscContrast);
  J2S_MEMBER(uint32_t, cscSaturation);
  J2S_MEMBER(uint32_t, cscRGain);  // 256 is unity, as for the next two
  J2S_MEMBER(uint32_t, cscGGain);
  J2S_MEMBER(uint32_t, cscBGain);
};

// Dynamic contrast: tone curves and their weights for dark, middle and bright pictures.
// A curve has 33 points, but only 32 weights; the difference is meant.
struct dci {
  J2S_STRUCT(dci);
  J2S_MEMBER(char*, name);  // in the AIPQ document the scene, such as "nature-sky"
  J2S_MEMBER(int8_t, dciEnable);
  J2S_MEMBER(int8_t, dciIsActive);
  J2S_MEMBER(uint16_t, dciWgtCoef_low, 33);  // 0..1023
  J2S_MEMBER(uint16_t, dciWgtCoef_mid, 33);
  J2S_MEMBER(uint16_t, dciWgtCoef_high, 33);
  J2S_MEMBER(uint16_t, dciWeight_low, 32);
  J2S_MEMBER(uint16_t, dciWeight_mid, 32);
  J2S_MEMBER(uint16_t, dciWeight_high, 32);
};

// Adaptive colour management over 65 hues: changes of luma (Y), hue (H) and saturation (S).
// The gain tables are flat, one row a hue: 65 rows of 9 luma or 13 saturation steps.
struct acm {
  J2S_STRUCT(acm);
  J2S_MEMBER(char*, name);  // in the AIPQ document the scene
  J2S_MEMBER(int8_t, acmEnable);
  J2S_MEMBER(int8_t, acmIsActive);
  J2S_MEMBER(int16_t, acmTableDeltaYbyH, 65);     // -255..255, added
  J2S_MEMBER(int16_t, acmTableDeltaHbyH, 65);     // -63..63
  J2S_MEMBER(int16_t, acmTableDeltaSbyH, 65);     // -255..255
  J2S_MEMBER(int16_t, acmTableGainYbyY, 65 * 9);  // 0..127, as all gains
  J2S_MEMBER(int16_t, acmTableGainHbyY, 65 * 9);
  J2S_MEMBER(int16_t, acmTableGainSbyY, 65 * 9);
  J2S_MEMBER(int16_t, acmTableGainYbyS, 65 * 13);
  J2S_MEMBER(int16_t, acmTableGainHbyS, 65 * 13);
  J2S_MEMBER(int16_t, acmTableGainSbyS, 65 * 13);
  J2S_MEMBER(uint32_t, lumGain);  // 0..1023, as the next two; 1023 by default
  J2S_MEMBER(uint32_t, hueGain);
  J2S_MEMBER(uint32_t, satGain);
};

// Gamma tables: one transfer curve a channel, from black to white.
struct gamma {
  J2S_STRUCT(gamma);
  J2S_MEMBER(char*, name);
  J2S_MEMBER(int8_t, gammaEnable);
  J2S_MEMBER(uint16_t, gammaTab_R, 1024);  // 0..65535
  J2S_MEMBER(uint16_t, gammaTab_G, 1024);
  J2S_MEMBER(uint16_t, gammaTab_B, 1024);
};

// Sharpening (sharp...), AI scene detection (AISD...) and AI super-resolution (AISR...).
// Super-resolution has the same eight controls for natural and for textual pictures.
struct sharp {
  J2S_STRUCT(sharp);
  J2S_MEMBER(char*, name);
  J2S_MEMBER(int8_t, sharpEnable);
  J2S_MEMBER(uint32_t, sharpPeakingGain);
  J2S_MEMBER(int8_t, sharpEnableShootCtrl);
  J2S_MEMBER(uint32_t, sharpShootCtrlOver);  // overshoot, then undershoot
  J2S_MEMBER(uint32_t, sharpShootCtrlUnder);
  J2S_MEMBER(int8_t, sharpEnableCoringCtrl);
  J2S_MEMBER(uint16_t, sharpCoringCtrlRatio0);  // 0 to 3: four positions
  J2S_MEMBER(uint16_t, sharpCoringCtrlRatio1);
  J2S_MEMBER(uint16_t, sharpCoringCtrlRatio2);
  J2S_MEMBER(uint16_t, sharpCoringCtrlRatio3);
  J2S_MEMBER(uint16_t, sharpCoringCtrlZero0);
  J2S_MEMBER(uint16_t, sharpCoringCtrlZero1);
  J2S_MEMBER(uint16_t, sharpCoringCtrlZero2);
  J2S_MEMBER(uint16_t, sharpCoringCtrlZero3);
  J2S_MEMBER(uint16_t, sharpCoringCtrlThrd0);
  J2S_MEMBER(uint16_t, sharpCoringCtrlThrd1);
  J2S_MEMBER(uint16_t, sharpCoringCtrlThrd2);
  J2S_MEMBER(uint16_t, sharpCoringCtrlThrd3);
  J2S_MEMBER(int8_t, sharpEnableGainCtrl);
  J2S_MEMBER(uint16_t, sharpGainCtrlPos0);
  J2S_MEMBER(uint16_t, sharpGainCtrlPos1);
  J2S_MEMBER(uint16_t, sharpGainCtrlPos2);
  J2S_MEMBER(uint16_t, sharpGainCtrlPos3);
  J2S_MEMBER(int8_t, sharpEnableLimitCtrl);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos00);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos01);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos02);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos03);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos10);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos11);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos12);
  J2S_MEMBER(uint16_t, sharpLimitCtrlPos13);
  J2S_MEMBER(uint16_t, sharpLimitCtrlBndPos0);
  J2S_MEMBER(uint16_t, sharpLimitCtrlBndPos1);
  J2S_MEMBER(uint16_t, sharpLimitCtrlBndPos2);
  J2S_MEMBER(uint16_t, sharpLimitCtrlBndPos3);
  J2S_MEMBER(uint16_t, sharpLimitCtrlRatio0);
  J2S_MEMBER(uint16_t, sharpLimitCtrlRatio1);
  J2S_MEMBER(uint16_t, sharpLimitCtrlRatio2);
  J2S_MEMBER(uint16_t, sharpLimitCtrlRatio3);
  J2S_MEMBER(int8_t, AISDEnable);
  J2S_MEMBER(int8_t, AISREnable);
  J2S_MEMBER(uint32_t, AISRFixModelIdx);
  J2S_MEMBER(int8_t, AISRTuningEnable);
  J2S_MEMBER(uint32_t, AISRUsmGain_natural);  // unsharp mask
  J2S_MEMBER(int8_t, AISRUsmEnableCtrl_natural);
  J2S_MEMBER(uint32_t, AISRUsmCtrlOver_natural);
  J2S_MEMBER(uint32_t, AISRUsmCtrlUnder_natural);
  J2S_MEMBER(uint32_t, AISRFusionGain_natural);  // fusion
  J2S_MEMBER(int8_t, AISRFusionEnableCtrl_natural);
  J2S_MEMBER(uint32_t, AISRFusionCtrlOver_natural);
  J2S_MEMBER(uint32_t, AISRFusionCtrlUnder_natural);
  J2S_MEMBER(uint32_t, AISRUsmGain_textual);
  J2S_MEMBER(int8_t, AISRUsmEnableCtrl_textual);
  J2S_MEMBER(uint32_t, AISRUsmCtrlOver_textual);
  J2S_MEMBER(uint32_t, AISRUsmCtrlUnder_textual);
  J2S_MEMBER(uint32_t, AISRFusionGain_textual);
  J2S_MEMBER(int8_t, AISRFusionEnableCtrl_textual);
  J2S_MEMBER(uint32_t, AISRFusionCtrlOver_textual);
  J2S_MEMBER(uint32_t, AISRFusionCtrlUnder_textual);
};

// The content of the PQ document: one block of each kind.
struct pq_tuning_param {
  J2S_STRUCT(pq_tuning_param);
  J2S_MEMBER(struct csc, csc);
  J2S_MEMBER(struct dci, dci);
  J2S_MEMBER(struct acm, acm);
  J2S_MEMBER(struct gamma, gamma);
  J2S_MEMBER(struct sharp, sharp);
};

inline constexpr int kAiSceneCount = 12;

// The content of the AIPQ document: one element for each AI scene, identified by `name`.
struct aipq_tuning_param {
  J2S_STRUCT(aipq_tuning_param);
  J2S_MEMBER(struct dci, dci, kAiSceneCount);
  J2S_MEMBER(struct acm, acm, kAiSceneCount);
};

// The root of the tables.
struct pq_config {
  J2S_STRUCT(pq_config);
  J2S_MEMBER(struct pq_tuning_param, pq_tuning_param);
  J2S_MEMBER(struct aipq_tuning_param, aipq_tuning_param);
};

#endif  // J2S_PQ_SCHEMA_H_
