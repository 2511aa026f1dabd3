~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Curve
 DEPT.M  : depth
 GR  .GAPI : gamma ray
~A
 top     45.0
 bottom  46.0
