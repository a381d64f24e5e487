object DM: TDM
    object A: TKVAConnection
    Username = 'first'
    Server = 'a=b'
  end
  object B: TKVAConnection
    Password = 'It''s'
  end
  object C: TKVAConnection
    Password = 'p'
    Server = 'C:\Data\' +
              'emp.gdb'
    Left = 1
  end
  object D: TKVAConnection
    Username = 'z'#252'rich'
    Password = '#1'
  end
  object E: TKVAConnection
  end
end
