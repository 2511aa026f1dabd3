~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.M  : depth
 GR  .GAPI : gamma ray
~A
 10.0   1.0
 10.5   2.0
 10.5   3.0
 10.2   4.0
 11.0   5.0
  9.5   6.0
  9.0   7.0
 11.0   8.0
