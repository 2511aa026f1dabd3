~VERSION INFORMATION
 VERS.                 2.0 :   CWLS LOG ASCII STANDARD -VERSION 2.0
 WRAP.                  NO :   ONE LINE PER DEPTH STEP
~WELL INFORMATION
#MNEM.UNIT      DATA                  DESCRIPTION
 STRT.M      1234.5000                : START DEPTH
 STOP.M      1235.2500                : STOP DEPTH
 STEP.M         0.2500                : STEP
 NULL.        -999.25                 : NULL VALUE
 WELL.       BASIC 1                  : WELL
~CURVE INFORMATION
 DEPT.M                               : DEPTH
 GR  .GAPI                            : GAMMA RAY
 rhob.G/CC                            : BULK DENSITY
~PARAMETER INFORMATION
 BHT .DEGC      35.5                  : BOTTOM HOLE TEMPERATURE
~OTHER
 Two curves, four rows, one null.
~A  DEPTH     GR      RHOB
1234.50    45.25   2.3125
1234.75    50.50  -999.25
1235.00    55.75   2.4375
1235.25    61.00   2.5000
