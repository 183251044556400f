#pragma once

#include "examples/support/gnuplot.h"
#include "examples/support/touchstone.h"

namespace examples {

/** What fills a Smith chart: the largest reflection in it, 1 where that is close to full reflection or beyond. */
double smith_extent(const reflection &a, const reflection &b);

/** Circles of constant resistance and arcs of constant reactance as the table $chart, with their values, in units of
 * the reference, as labels. `extent` is the reflection at the chart's edge. */
void add_smith_chart(gnuplot &g, double extent);

/** Points at round frequencies along a trace as the table $marks, with the frequencies as labels. */
void add_frequency_marks(gnuplot &g, const reflection &trace, double unit);

}  // namespace examples
