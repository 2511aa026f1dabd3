~Version Information
VERS.    1.20:   CWLS log ASCII Standard - version 1.20
WRAP.      NO:   one line per depth step
~Well Information
 STRT.M           20.000:
 NULL.              -0.0:
~Curve Information
 DEPT.M        :    1   DEPTH
 GCPS.cps      :    2   GCPS
 NEUT.cps      :    3   NEUTRON
~A Depth      GCPS      NEUT
   20.05      -0.0     0.000
   20.10     12.50      -0.0
