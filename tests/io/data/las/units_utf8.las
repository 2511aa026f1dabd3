~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.M      : depth
 DT  .µs/ft  : sonic
 TEMP.°C     : temperature
~A
 100.0  85.5  21.5
 100.5  86.0  21.75
