~VERSION INFORMATION
 VERS.                          2.0 :   CWLS LOG ASCII STANDARD -VERSION 2.0
 WRAP.                          NO  :   ONE LINE PER DEPTH STEP
~WELL INFORMATION
NULL    .               999.25                  :NULL VALUE
~CURVE INFORMATION
 DEPT   .M             :  1  DEPTH
 DT     .US/M          :  2  SONIC TRANSIT TIME
~A  DEPTH     DT
999.00      999.25
999.25     123.450
999.50     124.500
