~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.MTRS  : depth in an unusual spelling
 GR  .GAPI  : gamma ray
~A
 10.0  45.0
 10.5  46.0
