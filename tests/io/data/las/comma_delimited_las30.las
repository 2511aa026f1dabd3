~VERSION INFORMATION
 VERS.                          3.0 : CWLS LOG ASCII STANDARD -VERSION 3.0
 WRAP.                           NO : ONE LINE PER DEPTH STEP
 DLM .                        COMMA : DELIMITING CHARACTER BETWEEN DATA COLUMNS
~Well Information
 STRT .M              100.0 : First Index Value
 STOP .M              100.5 : Last Index Value
 STEP .M                0.25 : STEP
 NULL .             -999.25 : NULL VALUE
~Drilling_Definition
 DEPT .ft   : depth  {F}
 ROP  .ft/hr : Rate of Penetration {F}
~Drilling_Data | Drilling_Definition
322.02,24.0
323.05,37.5
~Log_Definition
 DEPT .M     : DEPTH             {F}
 DT   .US/M  : SONIC TRANSIT TIME {F}
 CDES .      : CORE DESCRIPTION  {S}
 ILD  .OHMM  : DEEP RESISTIVITY  {F}
~Log_Data | Log_Definition
100.00,123.45,"SANDSTONE, FINE",105.6
100.25,,LIMESTONE,110.2
100.50,124.50,"DOLOMITE
WITH VUGS",115.8
