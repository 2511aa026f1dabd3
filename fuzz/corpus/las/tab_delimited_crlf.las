~Version
 VERS.   2.0 : CWLS LOG ASCII STANDARD
 WRAP.   NO  : One line per depth step
 DLM .   TAB : Tab between values
~Well
 NULL.  -999.25 : NULL VALUE
~Curve
 DEPT.M      : Depth
 GR  .GAPI   : Gamma ray
 NOTE.       : Remark
 RES .OHMM   : Resistivity
~A
 10.0	 45.5	good hole	 2.25
 10.5		washout	 2.50
 11.0	 47.5	good hole	-999.25
