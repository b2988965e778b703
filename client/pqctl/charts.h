// What the parts of a board's documents look like as charts.
#ifndef PQCTL_CHARTS_H_
#define PQCTL_CHARTS_H_

#include <string>

#include "plot/chart.h"
#include "pqclient/cube_file.h"
#include "pqclient/json.h"
#include "pqclient/schema.h"

// section_value: of the PQ document, or one scene of the AIPQ document. title: whose it is.
// A table that the answer lacks is left out.

// The three tables, beside the straight line.
plot::Chart gamma_chart(const cJSON& section_value, const std::string& title);

// The three curves beside the straight line, and below them the three rows of weights.
plot::Chart dci_chart(const cJSON& section_value, const std::string& title);

// What is added by hue, and the six tables of gains by hue and luma or saturation.
plot::Chart acm_chart(const cJSON& section_value, const std::string& title);

// Any one table.
plot::Chart table_chart(const cJSON& table, const pqclient::Member& member,
                        const std::string& title);

// What a table of colours does: to greys, to the ramps of red, green and blue, and how far it moves
// the colours on two planes of the cube.
plot::Chart lut_chart(const pqclient::Cube& cube, const std::string& title);

#endif  // PQCTL_CHARTS_H_
