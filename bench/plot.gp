# Cost against size, from build/bench-LIBRARY.dat: keys, time of a lookup, time of a write (0: it can't).
set terminal svg size 900,420 font "sans-serif,12"
set output "docs/performance.svg"
set multiplot layout 1,2
set logscale xy
set format x "%.0f"
set xlabel "settings in the file (10 topics)"
set ylabel "processor time, us"
set key left top
set xrange [80:12500]
file(name) = "build/bench-" . name . ".dat"
width(name) = name eq "kavsetup" ? 3 : 1
set title "Load and one lookup"
plot for [name in "kavsetup lines inih GKeyFile SimpleIni iniparser"] file(name) \
  using 1:($2 > 0 ? $2 : NaN) with linespoints linewidth width(name) title name
set title "Load, 40 sets and a durable write"
plot for [name in "kavsetup GKeyFile SimpleIni iniparser"] file(name) \
  using 1:($3 > 0 ? $3 : NaN) with linespoints linewidth width(name) title name
