~Version
 VERS.   2.0 : CWLS LOG ASCII STANDARD - VERSION 2.0
 WRAP.   NO  : One line per time step
~Well
 STRT.S     0.0 : START TIME
 STOP.S    90.0 : STOP TIME
 STEP.S    30.0 : STEP
 NULL.  -999.25 : NULL VALUE
~Curve
 ETIM.S        : Elapsed time
 PRES.PSIG     : Pressure
 TEMP.DEGC     : Temperature
~A
  0.0   1500.5   20.25
 30.0   1501.0   20.50
 60.0   1501.5   20.75
 90.0   1502.0   21.00
