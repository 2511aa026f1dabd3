~VERSION INFORMATION
 VERS. 2.0: CWLS LOG ASCII STANDARD -VERSION 2.0
 WRAP.  No: SINGLE LINE PER DEPTH STEP
~WELL INFORMATION BLOCK
 NULL.                    -999.25                                     : Null value
~CURVE INFORMATION
TIME.DD/MM/YYYY-HH:MM:SS                     :   0 Date
BITDEP.ft                                    :   1 Bit Measured Depth
~A
  03/09/2021-00:00:00             76.8
  03/09/2021-00:00:05             76.7
