object DM: TDM
  object A: TDatabase
    Params.Strings = (
      'user name=first'
      'SERVER NAME=a=b'
      'PASSWORD='
      'USER NAME=second')
  end
  object B: TDatabase
    Params.Strings = (
      'PASSWORD=It''s'
      ' USER NAME=x'
      'SERVER NAME')
  end
  object C: TDatabase
    Params.Strings = (
      'SERVER NAME=C:\Data\' +
        'emp.gdb'
      'LANGDRIVER=x' 'PASSWORD=p'
      #85'SER NAME=none')
    Left = 1
  end
  object D: TDatabase
    Params.Strings = ('USER NAME=z'#252'rich'
    'PASSWORD=#1')
  end
  object E: TDatabase
    Params.Strings = (
      'OPEN MODE=READ/WRITE')
  end
end
