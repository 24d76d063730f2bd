# Draws the growth of costs: four graphs, each with its operations, on logarithmic axes. Called by benchmarks/measure
# with `counts`, the file of the counts, and `picture`.
set terminal pngcairo size 1200,900 font "DejaVu Sans,11"
set output picture
set datafile separator ";"
set logscale xy
set format x "%.0f"
set format y "10^{%T}"
set grid
set key top left reverse Left
set ylabel "instructions"
set yrange [100:1e8]
set xrange [0.8:12000]
set multiplot layout 2,2
do for [things in '"live objects" "pending records" "listeners" "subscriptions"'] {
    set title things
    operations = system(sprintf("awk -F ';' '$1 == \"%s\" && !seen[$3]++ { printf \"\\\"%%s\\\" \", $3 }' %s", things, counts))
    plot for [operation in operations] \
        sprintf("< grep '^%s;[0-9]*;%s;' %s", things, operation, counts) using 2:($5/$4) \
        with linespoints linewidth 2 pointtype 7 title operation
}
unset multiplot
