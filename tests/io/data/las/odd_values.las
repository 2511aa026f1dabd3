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
 1.0   NaN     (null)      -1.#IND0000
 2.0   -nan    ERR         1e39
 3.0   +2.5    .5          -999.2500
 4.0   1.#INF  ********    7.25E-1
