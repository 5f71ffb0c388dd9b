# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""The styles that make_music.py plays: one block a genre, one line a template.

Head of a block:   NAME LOW-HIGH BEATSxSTEPS key=value ...
    tempo range in BPM, beats a bar and steps a beat; the tempo counts these beats, which is how
    the genre's players count. `jitter` in milliseconds, `swing` as part of a step by which every
    second step comes late, `kit` a drum kit, `bass`, `comp`, `lead` and `pad` General MIDI programs
    (from 0), `lead=-` for none, `melody` the share of strong steps that the melody takes.
Line of a template: voice=PATTERN ...
    drums     X accent, x stroke, o soft, . none
    bass=     r root, f fifth, t third, o octave, w walking; - holds
    comp=     x chord, l low root, a next chord tone, s soft chord; - holds
    A pattern repeats until its template's longest one is full.
"""

STYLES = """
rock 100-156 4x4 jitter=7 bass=33,34 comp=29,27,30 lead=30,29,80 melody=.4
  kick=X.......X.x..... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r.r.r.r.r.r.r.r. comp=x-x-x-x-x-x-x-x-
  kick=X.x.....X.x..... snare=....X.......X..o ride=x...x...x...x... bass=r---..r.r---f--- comp=x------x--x-----
  kick=X.....x.X....... snare=....X.......X... ohat=x...x...x...x... bass=r-r-r-r-f-f-r-r- comp=x---x---x---x---

hardrock 112-168 4x4 jitter=6 kit=16 bass=34,33 comp=30,29 lead=30,81 melody=.3
  kick=X..x..x.X..x.... snare=....X.......X... ohat=x.x.x.x.x.x.x.x. bass=r.rr..r.r.rr.... comp=x.xx..x.x.xx....
  kick=X.x.X.x.X.x.X.x. snare=....X.......X... ride=X.x.X.x.X.x.X.x. bass=rrrrrrrrrrrrrrrr comp=xxxxxxxxxxxxxxxx

punk 156-206 4x2 jitter=6 kit=16 bass=34 comp=30,29 lead=- melody=.2
  kick=X..xX.x. snare=..X...X. hat=xxxxxxxx bass=rrrrrrrr comp=xxxxxxxx
  kick=X.x.X.x. snare=.X.X.X.X ohat=x.x.x.x. bass=rrrrrrrr comp=xxxxxxxx

metalblast 150-210 4x4 jitter=5 kit=16 bass=34 comp=30 lead=30,29 melody=.2
  kick=X.x.X.x.X.x.X.x. snare=..X...X...X...X. ride=x...x...x...x... bass=r.r.r.r.r.r.r.r. comp=xxxxxxxxxxxxxxxx
  kick=XxxxXxxxXxxxXxxx snare=....X.......X... ohat=x...x...x...x... bass=rrrrrrrrrrrrrrrr comp=xxxxxxxxxxxxxxxx
  kick=XxXxXxXxXxXxXxXx snare=........X....... crash=x...x...x...x... bass=r-------r------- comp=x-------x--x----

pop 92-132 4x4 jitter=5 bass=33,38,39 comp=0,4,25 lead=53,80,73 pad=48,89 melody=.5
  kick=X.....x.X.x..... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r-----r-r-f-r--- comp=x-------x-------
  kick=X...x...X...x... clap=....X.......X... hat=..x...x...x...x. bass=r..r..r.r..r..r. comp=x..x..x.x..x..x.
  kick=X..x....X..x.... snare=....X.......X... hat=xoxoxoxoxoxoxoxo bass=r--r----r--r---- comp=a.a.a.a.a.a.a.a.

dancepop 114-130 4x4 jitter=1 kit=24 bass=38,39 comp=81,4,5 lead=81,80 pad=90 melody=.5
  kick=X...X...X...X... clap=....X.......X... ohat=..x...x...x...x. bass=..r...r...r...r. comp=x..x..x...x..x..
  kick=X...X...X...X... clap=....X.......X... hat=xxxxxxxxxxxxxxxx bass=r.rrr.rrr.rrr.rr comp=x---..x---x---..

ballad 56-84 4x4 jitter=12 bass=32,33,35 comp=0,24,4 lead=40,73,65,52 pad=48,49 melody=.4
  kick=X.......X....... rim=....x.......x... hat=x...x...x...x... bass=r-------r------- comp=a.a.a.a.a.a.a.a.
  kick=X.....x.X....... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r-----f-r------- comp=x-------x-------
  bass=r--------------- comp=l.a.a.a.a.a.a.a.

powerballad 60-84 4x4 jitter=8 kit=16 bass=33 comp=29,0 lead=30,52 pad=48,50 melody=.4
  kick=X......xX.x..... snare=....X.......X... ride=x.x.x.x.x.x.x.x. bass=r-----r-r-----f- comp=x---x---x---x---
  kick=X.......X......x snare=....X.......X... ohat=x...x...x...x... bass=r-------r------- comp=x.x.x.x.x.x.x.x.

rnb 60-96 4x4 jitter=8 kit=25 bass=38,33 comp=4,5 lead=52,11 pad=89 melody=.4
  kick=X..x..x...x..x.. clap=....X.......X... hat=x.xxx.x.x.xxx.x. bass=r--r..r---r..r-- comp=x-----------x---
  kick=X......x..x..... snare=....X.......X... hat=xxxxxxxxxxxxxxxx bass=r------r--r----- comp=x------x--------

soul 88-124 4x4 jitter=8 bass=33,32 comp=27,16,0 lead=65,56,61 pad=61 melody=.4
  kick=X...X...X...X... snare=X...X...X...X... tamb=..x...x...x...x. bass=r..rr.f.r..rr.t. comp=....x.......x...
  kick=X.x...x.X.x...x. snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r--rf-r-o-frt-r- comp=x.......x.......

funk 92-124 4x4 jitter=6 bass=36,33 comp=27,7,28 lead=61,65 melody=.3
  kick=X.x...x...x..x.. snare=....X..o.o..X..o hat=xxxxxxxxxxxxxxxx bass=r.r..o.r..rr.o.. comp=xxxx.xx.xxxx.xx.
  kick=X..x..x.x.X..... snare=.o..X..o....X... hat=x.x.x.x.x.xxx.x. bass=r..o..r.r.f..o.. comp=..x...x...x..xx.

disco 108-130 4x4 jitter=4 bass=33,36 comp=27,0 lead=48,61 pad=48 melody=.4
  kick=X...X...X...X... snare=....X.......X... ohat=..x...x...x...x. bass=r.o.r.o.r.o.r.o. comp=..xx..xx..xx..xx
  kick=X...X...X...X... snare=....X.......X... hat=xxx.xxx.xxx.xxx. bass=r..rr.o.f..ff.o. comp=x.xxx.xxx.xxx.xx

house 118-128 4x4 jitter=0 kit=24 bass=38,39 comp=4,17,0 lead=81,80 pad=90,89 melody=.3
  kick=X...X...X...X... clap=....X.......X... ohat=..x...x...x...x. bass=r..r..r.r..r..r. comp=x..x..x...x.x...
  kick=X...X...X...X... hat=..x...x...x...xx shaker=xxxxxxxxxxxxxxxx bass=..r.r...r.r..r.. comp=...x..x....x..x.
  kick=X...X...X...X... rim=...x..x.....x... ohat=..x...x...x...x. bass=r.....r.......r. comp=x---------------

techno 124-142 4x4 jitter=0 kit=24,25 bass=38,87 comp=81,90 lead=- pad=95 melody=.2
  kick=X...X...X...X... ohat=..x...x...x...x. bass=..r...r...r...r. comp=x.x..x..x.x..x..
  kick=X...X...X...X... hat=xxxxxxxxxxxxxxxx clap=....x.......x... bass=.rrr.rrr.rrr.rrr
  kick=X...X...X...X... rim=..x..x..x..x..x. ride=..x...x...x...x. bass=rrrrrrrrrrrrrrrr comp=.......x........

trance 130-142 4x4 jitter=0 kit=24 bass=38,39 comp=81,90 lead=81,80 pad=90,91 melody=.5
  kick=X...X...X...X... clap=....X.......X... ohat=..x...x...x...x. bass=..rr..rr..rr..rr comp=aaaaaaaaaaaaaaaa
  kick=X...X...X...X... ohat=..x...x...x...x. hat=xxxxxxxxxxxxxxxx bass=.rrr.rrr.rrr.rrr comp=x-.x-.x-.x-.x-..

hardcore 160-190 4x4 jitter=0 kit=24 bass=38 comp=81,62 lead=81 melody=.3
  kick=X...X...X...X... ohat=..x...x...x...x. bass=..r...r...r...r. comp=x..x..x.x..x..x.
  kick=X...X...X...X... clap=....X.......X... hat=..x...x...x...x. bass=.rrr.rrr.rrr.rrr comp=aaaaaaaaaaaaaaaa

drumnbass 164-180 4x4 jitter=2 kit=24,0 bass=38,39 comp=4,90 lead=81,11 pad=89,95 melody=.3
  kick=X.........x..... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r-----------r---
  kick=X.x.......x..... snare=....X..o.o..X..o hat=xxxxxxxxxxxxxxxx bass=r---------r----- comp=x---------------
  kick=X..........x.... snare=....X.......X... ride=x.x.x.x.x.x.x.x. bass=rrr.r.r.rr..r.r. pad=x---------------

jungle 158-172 4x4 jitter=4 kit=0,8 bass=38 comp=4,88 lead=- pad=89 melody=.2
  kick=X.X.......XX....X.X.......X..... snare=....X..X.X..X..X....X..X.X....X. ride=x.x.x.x.x.x.x.x. bass=r-------....r---r-------r-------
  kick=X.X.......X.....X.X...X...X..... snare=....X..o.o..X..o....X..o.o..X.xx hat=x.x.x.x.x.x.x.x. bass=r-----------....f-------r---....

breakbeat 118-142 4x4 jitter=3 kit=24,0 bass=38,87 comp=81,4 lead=81 pad=90 melody=.3
  kick=X.........X..... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r..r..r...r..r.. comp=x..x..x.........
  kick=X.x....x..X..... snare=....X..o....X..o hat=xxxxxxxxxxxxxxxx bass=r.r....r..r..... comp=x---------------

dubstep 138-144 4x4 jitter=0 kit=24 bass=38,87 comp=90,81 lead=81 pad=89,95 melody=.2
  kick=X............... snare=........X....... hat=..x...x...x...x. bass=r---r---r-r-r-r-
  kick=X.....x......... snare=........X....... hat=x..x..x.x..x..x. bass=rrr.rr.rr---r-r- comp=x---------------

trap 130-150 4x4 jitter=0 kit=25 bass=38,39 comp=11,88,0 lead=80,11 pad=89 melody=.3
  kick=X......x..x..... clap=........X....... hat=x.x.x.x.x.xxxxx. bass=r------r--r-----
  kick=X..........x..x. snare=........X....... hat=xxxxxxxxxxxxxxxx bass=r----------r--r- comp=a...a...a...a...

hiphop 80-104 4x4 jitter=7 swing=.15 kit=8,25 bass=33,38 comp=4,0,11 lead=11,73 melody=.2
  kick=X.....xX..x..... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r-----rr..r-----
  kick=X..x....x.x..... snare=....X.......X..o hat=xxx.xxx.xxx.xxx. bass=r--r----r-r----- comp=x-----------x---
  kick=X.......X.x..... snare=....X.......X... hat=x...x...x...x... bass=r-------r-r----- comp=a.a.a.a.a.a.a.a.

triphop 70-96 4x4 jitter=6 kit=8 bass=33,32,38 comp=4,88 lead=40,73 pad=89,95 melody=.2
  kick=X.x....x..x..... snare=....X.......X..o hat=x.x.x.x.x.x.x.x. bass=r-------..r-f---
  kick=X.........X..... snare=....X.......X... ride=x...x...x...x... bass=r---------f----- comp=x---------------

reggae 64-92 4x4 jitter=8 bass=33,32 comp=27,16 lead=73,65 melody=.2
  kick=........X....... rim=........X....... hat=x.x.x.x.x.x.x.x. bass=r---t-r-....f-r- comp=....x.......x...
  kick=X...X...X...X... snare=........X....... hat=xoxoxoxoxoxoxoxo bass=r-r-..t-f-..r-.. comp=....xx......xx..
  kick=........X....... snare=........X....... hat=..x...x...x...x. bass=..r-r-f---r-t--- comp=....x.......x...

ska 120-170 4x2 jitter=7 bass=33,32 comp=27 lead=61,56,65 melody=.4
  kick=X.X.X.X. snare=..X...X. hat=xxxxxxxx bass=rtftrtft comp=.x.x.x.x
  kick=..X...X. snare=..X...X. hat=.x.x.x.x bass=r.t.f.t. comp=.x.x.x.x

reggaeton 86-104 4x4 jitter=1 kit=24,25 bass=38,33 comp=25,81,0 lead=80,73 pad=89 melody=.4
  kick=X...X...X...X... snare=...X..X....X..X. hat=x.x.x.x.x.x.x.x. bass=r--r--r-r--r--r- comp=x..x..x.x..x..x.
  kick=X...X...X...X... rim=...x..x....x..x. shaker=x.x.x.x.x.x.x.x. bass=r.....r.r.....r. comp=..x...x...x...x.

soca 150-166 4x2 jitter=3 kit=24 bass=38 comp=61,0 lead=80,56 melody=.4
  kick=X.X.X.X. snare=...X.X.X cow=x.x.xxx. bass=r.rr.rr. comp=.x.x.x.x
  kick=X.X.X.X. snare=.xX..xX. hat=xxxxxxxx bass=r..r..r. comp=.x.x.x.x

samba 92-112 4x4 jitter=7 bass=32,33 comp=24,25 lead=73,65 melody=.4
  surdo=o...X...o...X... shaker=xoxxxoxxxoxxxoxx tamb=x.xx.xx.x.x.xx.x bass=r..fr..fr..fr..f comp=x.xx.x.xx.x.x.x.
  kick=x..xX..xx..xX..x hat=xxxxxxxxxxxxxxxx rim=x..x..x...x.x... bass=r..rf..fr..rf..f comp=x..x..x.x..x.x..

bossa 112-148 4x2 jitter=9 kit=40,32 bass=32 comp=24,0 lead=73,65,11 melody=.4
  kick=x..xx..x rim=x..x..x...x..x.. hat=xxxxxxxx bass=r-.fr-.f comp=x..x..x...x..x..
  kick=x..xx..x shaker=xxxxxxxx bass=r-.rf-.f comp=x.x..x.x.x..x.x.

salsa 156-208 4x2 jitter=7 bass=32,33 comp=0 lead=61,56 melody=.4
  clave=x..x..x...x.x... cow=x.x.xxx. congahi=..x...x. congalo=......xx bass=...f..r- comp=x.xx.x.x.x.x.x.x
  clave=..x.x...x..x..x. timbale=x.xxx.xx guiro=x.xxx.xx congahi=..x...x. congalo=......xx bass=r..f..r. comp=.xx.x.x.xx.x.x.x

chacha 108-128 4x2 jitter=6 bass=32,33 comp=0,24 lead=73,61 melody=.4
  cow=x.x.x.x. guiro=x.xxx.xx congalo=......xx congahi=..x..... bass=r.f.r.rf comp=..x...x.
  kick=X...X... hat=x.x.x.x. congalo=......xx rim=..x...x. bass=r--fr--- comp=.x.x.x.x

rumba 96-128 4x2 jitter=7 bass=32 comp=24,25 lead=40,73 melody=.4
  clave=x..x..x...x.x... bongohi=xoxxxoxx bongolo=......x. bass=r--fr-f- comp=x..x..x.
  kick=X..xX.x. shaker=xxxxxxxx rim=..x...x. bass=r--ff-r- comp=a.a.a.a.

tango 112-136 4x2 jitter=9 bass=32 comp=21,0,23 lead=40,21 melody=.5
  snare=o.o.o.xx bass=r.r.r.r. comp=x.x.x.x.
  bass=r--rf-t- comp=x..xx.x.
  kick=X...X..x bass=r..rr.f. comp=l.x.l.xx

march 104-128 2x4 jitter=6 kit=48,0 bass=58,32 comp=60,61 lead=56,73,72 melody=.6
  kick=X...X... snare=x.xxx.xx cymbal=x...x... bass=r---f--- comp=..x-..x-
  kick=X...X... snare=x.x.xxxx bass=r---f--- comp=..x...x.

polka 108-132 2x4 jitter=7 bass=58,32 comp=21,22 lead=21,71 melody=.7
  kick=X...X... snare=..x...x. bass=r---f--- comp=..x-..x-
  kick=X...X... hat=..x...x. bass=r---f--- comp=..x...x.
  bass=r.t.f.t. comp=..xx..xx

waltz 84-180 3x2 jitter=9 kit=0,40 bass=32,33 comp=0,24,21 lead=40,73,71 pad=48 melody=.6
  kick=X..... snare=..o.o. hat=x.x.x. bass=r----- comp=..x-x-
  bass=r-....f-.... comp=..x-x-
  kick=X..... ride=x.x.x. rim=....x. bass=r-----f----- comp=..x.x.

viennese 156-190 3x1 jitter=8 kit=48 bass=43,32 comp=48,0 lead=48,40,73 melody=.7
  bass=r-- comp=.xx
  kick=X.. snare=.oo bass=r--f-- comp=.x-

jazzwaltz 120-190 3x3 jitter=9 kit=32,40 bass=32 comp=0,26 lead=65,11,56 melody=.5
  ride=x..x.xx.. pedal=...x..... kick=o........ bass=r--w--w-- comp=...x.....x.......x
  ride=x..x..x.x pedal=...x..x.. bass=r-----f-- comp=x.....x..

sixeight 50-84 2x6 jitter=9 bass=33,32 comp=0,24,29 lead=52,65,40 pad=48,50 melody=.4
  kick=X.....o..... snare=......X..... hat=x.x.x.x.x.x. bass=r-----f----- comp=a.a.a.a.a.a.
  kick=X...x....... snare=......X..... ride=x.x.x.x.x.x. bass=r---r-r----- comp=x-----x-----
  bass=r----------- comp=l.a.a.a.a.a.

jig 104-132 2x3 jitter=9 bass=32 comp=24,25,21 lead=40,73,22,74 melody=.9
  bass=r--f-- comp=x.xx.x
  kick=X..X.. tamb=..x..x bass=r--r-- comp=x-xx-x

reel 104-124 2x4 jitter=8 bass=32 comp=24,25 lead=40,73,22,110 melody=.9
  kick=X...X... snare=.oxo.oxo bass=r---f--- comp=x.xxx.xx
  bass=r.f.r.f. comp=.x.x.x.x

swing 112-206 4x3 jitter=9 kit=32,40 bass=32 comp=0,26 lead=65,56,66,11 melody=.5
  ride=x..x.xx..x.x pedal=...x.....x.. kick=o.....o..... bass=w..w..w..w.. comp=...x.......x.....x......
  hat=x..x.xx..x.x pedal=...x.....x.. snare=.....o...... bass=r..t..f..w.. comp=x....x......
  ride=x..x..x..x.. pedal=...x.....x.. bass=w--w--w--w--

bigband 120-184 4x3 jitter=7 kit=0,32 bass=32 comp=61,26 lead=61,65,56 melody=.5
  kick=X..X..X..X.. ride=x..x.xx..x.x pedal=...x.....x.. bass=w..w..w..w.. comp=x..x..x..x..
  hat=x..x.xx..x.x pedal=...x.....x.. snare=...o.....o.. bass=w..w..w..w.. comp=.....x.....xx...........

jazzballad 54-84 4x3 jitter=14 kit=40 bass=32 comp=0,26 lead=65,56,66 melody=.5
  snare=o.oo.oo.oo.o pedal=...o.....o.. bass=r-----f----- comp=x-----x-----
  ride=x..x..x..x.. kick=o........... bass=r--w--f--w-- comp=x-----------

shuffle 96-138 4x3 jitter=7 bass=33,32 comp=27,29,16 lead=29,22,65 melody=.4
  kick=X.....X..... snare=...X.....X.. hat=x.xx.xx.xx.x bass=r.rt.tf.ft.t comp=x.xx.xx.xx.x
  kick=X.....X....x snare=...X.....X.. ride=x.xx.xx.xx.x bass=w--w--w--w-- comp=..x..x..x..x

slowblues 54-78 4x3 jitter=10 bass=33 comp=0,27,16 lead=29,22,65 melody=.4
  kick=X.....X..... snare=...X.....X.. hat=xxxxxxxxxxxx bass=r--r-tf--f-t comp=xxxxxxxxxxxx
  kick=X....xX....x snare=...X.....X.. ride=x.xx.xx.xx.x bass=r-----f----- comp=...x.....x..

doowop 62-90 4x3 jitter=9 bass=32,33 comp=0 lead=65,53 pad=52,53 melody=.4
  kick=X.....X.x... snare=...X.....X.. hat=xxxxxxxxxxxx bass=r----fr----t comp=xxxxxxxxxxxx
  kick=X.....X..... rim=...x.....x.. bass=r--t--f--t-- comp=aaaaaaaaaaaa

countrytrain 92-126 4x4 jitter=6 kit=40,0 bass=32,33 comp=25,24 lead=27,22,105,40 melody=.5
  kick=X...X...X...X... snare=oXooXooXoXooXoXo bass=r---f---r---f--- comp=..x...x...x...x.
  kick=X...X...X...X... snare=..X...X...X...X. hat=xoxoxoxoxoxoxoxo bass=r---f---r---f--- comp=..xx..xx..xx..xx

country 92-140 4x4 jitter=7 bass=32,33 comp=25,24 lead=27,40,22 melody=.5
  kick=X.......X....... snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=r-------f------- comp=..x...x.x.x...x.
  kick=X.......X....... rim=....x.......x... bass=r---....f---.... comp=....x-......x-..

bluegrass 108-146 2x4 jitter=7 bass=32 comp=25 lead=105,40,25 melody=.9
  bass=r---f--- comp=..x...x.
  bass=r---f--- comp=..xx..xx

gospel 92-132 4x3 jitter=8 bass=33,32 comp=16,0 lead=53,65 melody=.4
  kick=X.....X..... clap=...X.....X.. tamb=x.xx.xx.xx.x bass=r--r-tf--f-t comp=x..x..x..x.x
  kick=X..X..X..X.. snare=...X.....X.. ride=x.xx.xx.xx.x bass=w--w--w--w-- comp=..x..x..x..x

twist 148-184 4x2 jitter=6 bass=32,33 comp=27,0 lead=65,27 melody=.4
  kick=X...X... snare=..X..XX. ride=xxxxxxxx bass=r.tft.f. comp=x.x.x.x.
  kick=X..xX... snare=..X...X. hat=xxxxxxxx bass=r.t.f.t. comp=xxxxxxxx

surf 148-180 4x2 jitter=6 bass=33,34 comp=27,26 lead=27,26 melody=.6
  kick=X...XX.. snare=..XX..X. ride=x.x.x.x. bass=rrrrrrrr comp=x.x.x.x.
  kick=X.XXX.XX snare=..X...X. hat=xxxxxxxx bass=r.r.f.f. comp=xxxxxxxx

synthpop 104-136 4x4 jitter=0 kit=24,25 bass=38,39 comp=81,80,62 lead=80,81 pad=90,50 melody=.5
  kick=X.......X....... snare=....X.......X... hat=xxxxxxxxxxxxxxxx bass=r.r.r.r.r.r.r.r. comp=aaaaaaaaaaaaaaaa
  kick=X...X...X...X... snare=....X.......X... bass=rrorrrorrrorrror comp=x---..x---......

chiptune 100-170 4x4 jitter=0 kit=24 bass=80,38 comp=80 lead=80,81 melody=.7
  kick=X...X...X...X... snare=....X.......X... bass=r.o.r.o.r.o.r.o. comp=aaaaaaaaaaaaaaaa
  kick=X.....X.X.....X. snare=....X.......X... hat=x.x.x.x.x.x.x.x. bass=rrrrrrrrrrrrrrrr comp=a.a.a.a.a.a.a.a.
  bass=r.r.r.r.r.r.r.r. comp=aaaaaaaaaaaaaaaa

ambientarp 70-116 4x4 jitter=1 bass=38,89 comp=88,11,46,98 lead=- pad=89,91,95 melody=.2
  comp=a.a.a.a.a.a.a.a. bass=r---------------
  comp=aaaaaaaaaaaaaaaa bass=r-------r-------
  comp=a...a.a.a...a.a. kick=x.......x....... bass=r---------------

classicalstrings 76-144 4x4 jitter=14 kit=48 bass=43,42 comp=48,49,44 lead=40,48,68,73 melody=.6
  bass=r---f---r---f--- comp=x.x.x.x.x.x.x.x.
  bass=r---r---r---r--- comp=..x...x...x...x.
  bass=r-------f------- comp=a.a.a.a.a.a.a.a.

minuet 96-138 3x4 jitter=12 bass=42,43,6 comp=48,6,0 lead=40,68,6 melody=.6
  bass=r---t---f--- comp=....x---x---
  bass=r-----------f----------- comp=a.a.a.a.a.a.

albertipiano 92-152 4x2 jitter=12 bass=0 comp=0,6 lead=0,73 melody=.6
  comp=lafalafa
  comp=laaalaaa bass=r-------
  comp=l.x.l.x.

solopiano 62-108 4x4 jitter=16 bass=0 comp=0,1 lead=0 melody=.5
  bass=r-------f------- comp=..a.a.a...a.a.a.
  bass=r--------------- comp=x---x---x---x---
  bass=r---....r---.... comp=....x-......x-..

ragtime 80-112 2x4 jitter=9 bass=0 comp=0,3 lead=0 melody=.8
  bass=r-..f-.. comp=..x...x.
  bass=r.t.f.t. comp=.x.x.x.x

marchinghymn 88-120 4x2 jitter=10 bass=58,19 comp=19,61,52 lead=19,56,52 melody=.9
  bass=r-r-f-r- comp=x-x-x-x-
  bass=r-f-t-f- comp=x---x---

afrobeat 100-128 4x4 jitter=7 bass=33 comp=27,16 lead=61,65 melody=.3
  kick=X..x..X...x..x.. snare=....o..X....X..o hat=x.xxx.xxx.xxx.xx shaker=xoxoxoxoxoxoxoxo bass=r..r..f.r..t..f. comp=..x..x....x..x..
  cow=x.x.xx.x.x.xx.x. kick=X...x...X...x... congahi=..xx..x...xx..x. bass=r.r...f.t..r.... comp=xx.xx.x.xx.xx.x.

afrosixeight 96-132 4x3 jitter=7 bass=33,32 comp=25,12 lead=12,73 melody=.4
  cow=x.x.xx.x.x.x congahi=..x..x..x..x congalo=x.....x..... kick=X.....X..... bass=r..r.f..r.f. comp=a.a.aa.a.a.a
  agogo=x.xx.x.xx.x. shaker=x..x..x..x.. surdo=X.....X..... bass=r-----f----- comp=..x..x..x..x

bolero 76-100 4x4 jitter=9 bass=32 comp=24,25 lead=40,56,73 pad=48 melody=.4
  bongohi=x.xxx.x.x.x.x.x. shaker=x.x.x.x.x.x.x.x. congalo=............x.x. bass=r-------f---r--- comp=a.a.a.a.a.a.a.a.
  rim=x..xx.x.x.x.x.x. kick=X.......X...x... bass=r-----..f-..t-.. comp=..x...x...x...x.

downtempo 84-110 4x4 jitter=2 kit=25,24 bass=38,39 comp=4,5,88 lead=11,73 pad=89,90 melody=.3
  kick=X...X...X...X... clap=....x.......x... shaker=..x...x...x...x. bass=r---..r---..f--- comp=x---------------
  kick=X.....x...x..... rim=....x.......x... hat=x.x.x.x.x.x.x.x. bass=r-----r---r----- comp=a...a..a..a.a...

folkguitar 84-128 4x4 jitter=11 bass=32 comp=24,25 lead=73,40,22 melody=.4
  comp=l.a.f.a.l.a.f.a.
  comp=x...x.xx.xx.x.xx bass=r-------f-------
  comp=la.af.a.la.af.a. bass=r-------r-------
"""
