// Charts of the parts of a board's documents.
#ifndef PQCTL_CHARTS_H_
#define PQCTL_CHARTS_H_

#include <string>

#include "plot/chart.h"
#include "pqclient/cube_file.h"
#include "pqclient/json.h"
#include "pqclient/schema.h"

// section_value: a section of the PQ document, or one scene of the AIPQ document. title: names the
// section and the board. A table missing from the answer is left out.

// The three tables, with the straight line for comparison.
plot::Chart gamma_chart(const cJSON& section_value, const std::string& title);

// The three curves with the straight line, and below them the three rows of weights.
plot::Chart dci_chart(const cJSON& section_value, const std::string& title);

// The changes by hue, and the six tables of gains by hue and luma or saturation.
plot::Chart acm_chart(const cJSON& section_value, const std::string& title);

// Any one table.
plot::Chart table_chart(const cJSON& table, const pqclient::Member& member,
                        const std::string& title);

// The effect of a colour table: on greys, on the ramps of red, green and blue, and the distance by
// which it moves the colours on two planes of the cube.
plot::Chart lut_chart(const pqclient::Cube& cube, const std::string& title);

#endif  // PQCTL_CHARTS_H_
