~Version
 VERS.   1.2 :
 WRAP.   NO  :
~Well
 NULL.  -999.25 :
~Curve
 DEPT.метр  : глубина
 RES .Ом·м  : сопротивление
~A
 12.0  50.5
 12.1  51.5
