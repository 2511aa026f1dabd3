~Version
 VERS.   2.0 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.M     : depth
 A   .U     : a
 B   .U     : b
 C   .U     : c
~A
 1.0   1.1   1.2   1.3
 2.0   2.1
 3.0   3.1   3.2   3.3   3.4   3.5
 4.0   4.1   4.2   4.3
