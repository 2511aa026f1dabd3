~Version
 VERS.   1.2 : CWLS LOG ASCII STANDARD - VERSION 1.2
 WRAP.   NO  : One line per depth step
~Well
 STRT.FT  1002.0 :
 STOP.FT  1000.0 :
 STEP.FT    -0.5 :
 NULL.   -999.25 :
~Curve
 DEPT.FT   : Depth
 SP  .MV   : Spontaneous potential
 CALI.IN   : Caliper
~A
1002.0   -12.5   8.50
1001.5   -13.0   8.25
1001.0   -13.5   8.75
1000.5   -14.0   8.50
1000.0   -14.5   8.00
