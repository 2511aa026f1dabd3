~Version Information
 VERS.  3.0   : CWLS LOG ASCII STANDARD
 WRAP.  NO    : One line per depth step
 DLM .  SPACE : Delimiting character
~Well Information
 NULL .                  -999.2500       : Null Value
~Curve
 DEPT  .F                                : Depth {F}
 TENS  .LBF                              : Tension {F}
 3'TRA .µS                               : 3 Foot Floating Gate Transit Time {F}
~   DEPTH     TENSION     TT
  1088.1737   339.4208   776.7905
  1088.6737   340.4208   777.7905
