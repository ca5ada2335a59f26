# Speed against ratio of the coders of one class of samples, as SVG.
# gnuplot -e "data='FILE'; title='TEXT'" bench/plot.gp
# Lines of FILE: name, 1 if it is ours, ratio, MB/s of encode, MB/s of decode. Ours are two, progressive before interlaced.
set terminal svg size 900,480 font 'DejaVu Sans,13' background 'white'
set datafile separator "\t"
set multiplot layout 1,2 title title font ',15'

# A coder has the same colour and shape in every plot.
names = 'qoi png1 lz4 zstd1 jpeg-ls jpeg-xl htj2k'
colours = '#0072B2 #7F7F7F #009E73 #56B4E9 #CC79A7 #6A3D9A #B8860B'
shapes = '9 13 11 5 15 8 3'

present = ' '
stats data using (present = present.strcol(1).' ', $4) nooutput
low = STATS_min
high = STATS_max
stats data using 5 nooutput
low = (STATS_min < low ? STATS_min : low) / 1.4
high = (STATS_max > high ? STATS_max : high) * 1.4
set logscale y
set yrange [low:high]
set ytics (5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000)
set offsets graph 0.06, graph 0.06, 0, 0
set grid xtics ytics lc rgb '#DDDDDD'
set border 3
set tics nomirror
set xlabel 'ratio (raw size / coded size)'
set bmargin at screen 0.14
set tmargin at screen 0.85
set key at screen 1.0,0.8 right top vertical reverse Left samplen 1 width -3

do for [direction in 'encode decode'] {
  isFirst = direction eq 'encode'
  column = isFirst ? 4 : 5
  set lmargin at screen isFirst ? 0.09 : 0.465
  set rmargin at screen isFirst ? 0.405 : 0.78
  set title direction
  if (isFirst) { set ylabel 'MB/s of raw picture, one thread' } else { unset ylabel; set key off }
  plot data using ($2 == 1 && int($0) == 0 ? $3 : NaN):column with points pt 7 ps 1.4 lc rgb '#D55E00' title 'Vorel progressive', \
       data using ($2 == 1 && int($0) == 1 ? $3 : NaN):column with points pt 6 ps 1.4 lw 2 lc rgb '#D55E00' title 'Vorel interlaced', \
       for [i = 1:words(names)] data using (strcol(1) eq word(names, i) ? $3 : NaN):column with points \
         pt int(word(shapes, i)) ps 1.2 lw 1.5 lc rgb word(colours, i) \
         title (strstrt(present, ' '.word(names, i).' ') > 0 ? word(names, i) : '')
}
unset multiplot
