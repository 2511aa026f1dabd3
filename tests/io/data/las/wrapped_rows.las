~Version Information
 VERS.                1.20:   CWLS log ASCII Standard -VERSION 1.20
 WRAP.                 YES:   Multiple lines per depth step
~Well Information
 STRT.M            910.000:
 STOP.M            909.750:
 STEP.M            -0.1250:
 NULL.           -999.2500:   Null value
~Curve Information
 DEPT.M                   :    Depth
 DT  .US/M                :  1 Sonic Travel Time
 RHOB.K/M3                :  2 Density
 NPHI.V/V                 :  3 Porosity
 SP  .MV                  :  4 Spon. Potential
 GR  .GAPI                :  5 Gamma Ray
~A Log data section
910.000000
  -999.2500  2692.7075     0.3140
    19.4086    96.5306
909.875000
  -999.2500  2712.6460     0.2886
    23.3987    90.2803
909.750000
  -999.2500  2692.8137     0.2730
    22.5909    89.8492
