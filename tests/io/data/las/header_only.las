~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.M  : depth
 GR  .GAPI : gamma ray
